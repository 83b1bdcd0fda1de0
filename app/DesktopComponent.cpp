#include "app/DesktopComponent.h"

#include "app/ShellLog.h"
#include "service/NotNull.h"

#include <winrt/Windows.ApplicationModel.h>

using namespace winrt::Windows::ApplicationModel;
using namespace winrt::Windows::ApplicationModel::Background;
using namespace winrt::Windows::Foundation;

namespace VelmoNotificationClient
{

IAsyncAction LaunchDesktopComponent(wchar_t const* parameterGroup)
{
    return NotNull(FullTrustProcessLauncher::LaunchFullTrustProcessForCurrentAppAsync(parameterGroup));
}

winrt::fire_and_forget FinishLaunch(winrt::com_ptr<App> /*app*/, IAsyncAction launch, BackgroundTaskDeferral deferral)
{
    try
    {
        co_await winrt::resume_agile(launch);
    }
    catch (...)
    {
        co_return;
    }
    shellLog.Info(L"Launch Done !! ");
    if (deferral)
    {
        deferral.Complete();
        shellLog.Info(L"Service deferral complete");
    }
}

} // namespace VelmoNotificationClient
