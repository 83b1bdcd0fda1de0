#include "app/DesktopComponent.h"

#include "app/ShellLog.h"
#include "service/NotNull.h"

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
    // NOLINTNEXTLINE(bugprone-exception-escape): nothing is left to hear of a failure in it, which ends the process
    launch.Completed([app, deferral](auto const&, AsyncStatus status) noexcept {
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
