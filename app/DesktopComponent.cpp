#include "app/DesktopComponent.h"

#include "app/ShellLog.h"
#include "service/NotNull.h"
#include "service/WhenEnded.h"

#include <winrt/Windows.ApplicationModel.h>

using namespace winrt::Windows::ApplicationModel;
using namespace winrt::Windows::ApplicationModel::Background;
using namespace winrt::Windows::Foundation;

namespace VelmoNotificationClient
{

void LaunchDesktopComponent(winrt::com_ptr<App> const& app, wchar_t const* parameterGroup,
                            BackgroundTaskDeferral const& deferral)
{
    auto const launch = NotNull(FullTrustProcessLauncher::LaunchFullTrustProcessForCurrentAppAsync(parameterGroup));
    WhenEnded(launch, [app, deferral](auto const&, AsyncStatus status) {
        if (status != AsyncStatus::Completed)
        {
            return;
        }
        shellLog.Info(L"Launch Done !! ");
        if (deferral)
        {
            deferral.Complete();
            shellLog.Info(L"Service deferral complete");
        }
    });
}

} // namespace VelmoNotificationClient
