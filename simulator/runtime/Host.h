#pragma once
#include "simulator/model/Activation.h"
#include "simulator/model/Fault.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sim
{

// What the runtime classes of one process have of the world outside: the device's broker, or a test.
class Host
{
  public:
    // Called with the outcome, 0 or a failing result code, once; on a thread of its own.
    using Launched = std::function<void(std::int32_t result)>;

    virtual ~Host() = default;

    // Waits for what the platform has for the app; nothing when the app is to end. Called on the main view's thread,
    // a single-threaded apartment, which serves its COM calls meanwhile.
    virtual std::optional<Activation> NextActivation() = 0;

    // The app ends: NextActivation gives nothing more. From any thread.
    virtual void Exit() = 0;

    // An override failed and nothing handled it. A real process ends in here, at once.
    virtual void Fail(std::int32_t result) = 0;

    // The fault that strikes this call, if one does. From any thread.
    virtual std::optional<Fault> TakeFault(std::wstring_view call) = 0;

    // Starts the desktop component; application is empty for the package's own app. Returns at once.
    virtual void LaunchDesktop(std::wstring const& application, std::optional<std::wstring> const& group,
                               Launched launched) = 0;

    // For the device's journal.
    virtual void Report(std::wstring kind, std::vector<std::wstring> details) = 0;
};

} // namespace sim
