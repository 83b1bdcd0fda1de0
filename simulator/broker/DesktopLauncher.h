#pragma once
#include "simulator/broker/ProcessStarter.h"
#include "simulator/model/Device.h"
#include "simulator/model/Journal.h"
#include "simulator/model/Package.h"

#include <cstdint>
#include <mutex>
#include <optional>
#include <set>
#include <string>

namespace sim
{

// Starts the package's full-trust desktop component. Each launch is a process of its own; none is looked for again.
class DesktopLauncher
{
  public:
    // mutex: the broker's. All members are called with it held; here it is taken when a process ends.
    DesktopLauncher(Device const& device, Journal& journal, ProcessStarter& processes, std::mutex& mutex);

    // applicationId: empty for the package's own app. group: none launches without parameters. Gives 0 or the failing
    // result code that the platform gives.
    std::int32_t Launch(Package const& package, std::wstring const& applicationId,
                        std::optional<std::wstring> const& group);

    void KillAll();

    std::size_t RunningCount() const noexcept { return m_running.size(); }

  private:
    std::int32_t Start(Package const& package, std::wstring const& group, std::wstring const& parameters);
    void ProcessEnded(unsigned long id, unsigned long exitCode);

    Device const& m_device;
    Journal& m_journal;
    ProcessStarter& m_processes;
    std::mutex& m_mutex;
    std::set<unsigned long> m_running;
};

} // namespace sim
