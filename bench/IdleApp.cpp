#include "bench/IdleApp.h"

#include "bench/Devices.h"
#include "bench/ProcessHandles.h"
#include "simulator/base/Error.h"

namespace bench
{

IdleApp::IdleApp(std::wstring const& simulator, std::wstring const& device, std::wstring const& package)
    : m_executable(package + L"\\VelmoNotificationClient.exe"), // also the bare app's, which stands in its place
      m_broker(FollowNewDevice(simulator, device, package))
{
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
