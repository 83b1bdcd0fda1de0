#pragma once
#include "bench/UnixProcess.h"
#include "simulator/client/BrokerClient.h"

#include <memory>
#include <string>
#include <vector>

namespace bench
{

// A packaged app on a device of its own. Failures are sim::Error.
class IdleApp
{
  public:
    // Registers the package on the device, a folder that is made.
    IdleApp(std::wstring const& simulator, std::wstring const& device, std::wstring const& package);
    IdleApp(IdleApp const&) = delete;
    IdleApp& operator=(IdleApp const&) = delete;
    ~IdleApp();

    // A desktop program connects to its service, or has done so, for which the platform starts it.
    void AwaitConnection();

    UnixProcess const& Process() const { return *m_process; }
    std::vector<std::wstring> Handles() const;

  private:
    std::wstring m_executable;
    std::unique_ptr<sim::BrokerClient> m_broker;
    unsigned long m_id = 0;
    std::unique_ptr<UnixProcess> m_process;
};

} // namespace bench
