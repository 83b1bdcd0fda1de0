#include "bench/Devices.h"

#include "simulator/base/Error.h"
#include "simulator/base/Process.h"

namespace bench
{

void AwaitSuccess(sim::Handle const& process, std::wstring const& name)
{
    DWORD exitCode = 1;
    if (!process || WaitForSingleObject(process.Get(), INFINITE) != WAIT_OBJECT_0 ||
        !GetExitCodeProcess(process.Get(), &exitCode) || exitCode != 0)
    {
        throw sim::Error(name + L" failed");
    }
}

std::unique_ptr<sim::BrokerClient> FollowNewDevice(std::wstring const& simulator, std::wstring const& device,
                                                   std::wstring const& package)
{
    auto const command = L"\"" + simulator + L"\" register \"" + package + L"\"";
    AwaitSuccess(sim::StartProcess({simulator, command, package, {{L"VELMO_SIM_HOME", device}}}), command);
    auto broker = sim::BrokerClient::Connect(sim::Device(device));
    broker->Follow();
    return broker;
}

} // namespace bench
