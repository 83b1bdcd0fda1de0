#pragma once
#include "simulator/model/Activation.h"
#include "simulator/model/Fault.h"
#include "simulator/runtime/Namespaces.h"
#include "simulator/transport/Message.h"

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

    // What the app's window holds when it is made, by its first foreground activation. Called on the main view's
    // thread.
    virtual IInspectable WindowContent() { return nullptr; }

    // For the device's journal.
    virtual void Report(std::wstring kind, std::vector<std::wstring> details) = 0;

    // The platform's answer to a request (simulator/services/Services.h). Blocks, on any thread but the one that reads
    // for the host.
    virtual Message Ask(Message const& request) = 0;

    // The same; `answered` is called once, on a thread of the system's pool.
    virtual void AskLater(Message const& request, std::function<void(Message)> answered) = 0;

    virtual void Tell(Message const& words) = 0;

    // Gets what the platform says on its own (request, service-closed, cancel), on pool threads, in order for each
    // connection or instance and not serialised otherwise. One listener per process, set once before the first
    // connection or instance exists.
    virtual void Listen(std::function<void(Message const&)> listener) = 0;

    // The folder of the app's data (...\Packages\<family>). Throws hresult_error 0x80073D54 for a process without
    // package identity.
    virtual std::wstring DataFolder() = 0;

    // Where the app's package lies. Throws hresult_error 0x80073D54 for a process without package identity.
    virtual std::wstring PackageFolder() = 0;

    // The app has taken a deferral of a request that it serves, or has completed one. Told each time, also when that
    // changes nothing: for tests.
    virtual void DeferralTaken(std::wstring const& request) {}
    virtual void DeferralCompleted(std::wstring const& request) {}
};

} // namespace sim
