#include "bench/IdleApp.h"

#include "bench/ProcessHandles.h"
#include "simulator/base/Error.h"
#include "simulator/base/Process.h"

namespace bench
{

IdleApp::IdleApp(std::wstring const& simulator, std::wstring const& device, std::wstring const& package)
    : m_executable(package + L"\\VelmoNotificationClient.exe") // also the bare app's, which stands in its place
{
    auto const registering = sim::StartProcess(
        {simulator, L"\"" + simulator + L"\" register \"" + package + L"\"", package, {{L"VELMO_SIM_HOME", device}}});
    DWORD exitCode = 1;
    if (!registering || WaitForSingleObject(registering.Get(), INFINITE) != WAIT_OBJECT_0 ||
        !GetExitCodeProcess(registering.Get(), &exitCode) || exitCode != 0)
    {
        throw sim::Error(L"the package in " + package + L" is not registered");
    }
    m_broker = sim::BrokerClient::Connect(sim::Device(device));
    m_broker->Follow();
}

IdleApp::~IdleApp()
{
    try
    {
        m_broker->Stop();
    }
    catch (sim::Error const&) // it is off as it is
    {
    }
}

void IdleApp::AwaitConnection()
{
    for (;; WaitForSingleObject(m_broker->Arrived(), INFINITE))
    {
        while (auto const event = m_broker->NextEvent())
        {
            if (event->kind == L"app-started")
            {
                m_id = std::stoul(event->Detail(L"pid").value());
            }
            if (event->kind == L"app-service-opened")
            {
                m_process = std::make_unique<UnixProcess>(m_executable);
                return;
            }
        }
    }
}

std::vector<std::wstring> IdleApp::Handles() const
{
    return HandlesOf(m_id);
}

} // namespace bench
