#pragma once
#include "simulator/platform/Journal.h"
#include "simulator/platform/ProcessStarter.h"
#include "simulator/platform/Registration.h"
#include "simulator/protocol/Device.h"
#include "simulator/protocol/Requests.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>

namespace sim
{

// Starts the package's full-trust desktop component. Each launch starts a new process.
class DesktopComponent
{
  public:
    DesktopComponent(Device const& device, Registration const& registration, Journal& journal,
                     ProcessStarter& processes);

    // Returns S_OK, or the HRESULT of the failure. wake: the running task's. Throws Error when no package is
    // registered.
    std::int32_t Launch(LaunchDesktop const& launch, std::uint32_t wake);

    // Ignores any other process.
    void ProcessEnded(unsigned long id, unsigned long exitCode);

    void KillAll();

    std::size_t RunningCount() const noexcept { return m_running.size(); }

  private:
    std::int32_t Start(Package const& package, std::wstring const& group, std::wstring const& parameters,
                       std::uint32_t wake);

    Device const& m_device;
    Registration const& m_registration;
    Journal& m_journal;
    ProcessStarter& m_processes;
    std::map<unsigned long, std::uint32_t> m_running; // the wake, by process id
};

} // namespace sim
