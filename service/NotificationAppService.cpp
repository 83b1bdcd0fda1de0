#include "service/NotificationAppService.h"

#include "service/AppServiceLog.h"
#include "service/NotNull.h"

using namespace winrt::Windows::ApplicationModel::Activation;
using namespace winrt::Windows::ApplicationModel::AppService;
using namespace winrt::Windows::ApplicationModel::Background;

namespace VelmoNotificationClient
{

void NotificationAppService::ServiceNewConnection(BackgroundActivatedEventArgs const& args) const
{
    appServiceLog.Info(L"Inside ServiceNewConnection .");
    auto const task = NotNull(args.TaskInstance());
    serviceDeferral.Set(task.GetDeferral());
    appServiceLog.Info(L"ServiceNewConnection deferral.");
    auto const details = task.TriggerDetails().try_as<AppServiceTriggerDetails>();
    task.Canceled(OnTaskCanceled);
    auto const connection = NotNull(NotNull(details).AppServiceConnection());
    appServiceConnection.Set(connection);
    connection.ServiceClosed(OnServiceClosed);
    connection.RequestReceived(OnRequestReceived); // last: requests may arrive from here on
}

void NotificationAppService::OnTaskCanceled(IBackgroundTaskInstance const&, BackgroundTaskCancellationReason const&)
{
    appServiceLog.Info(
        L"Inside OnTaskCanceled VelmoNotificationClient UwpNotificationAppService::OnTaskCanceled deferral complete");
    try
    {
        CompleteTask();
    }
    catch (...)
    {
        appServiceLog.Error(
            L"Inside OnTaskCanceled VelmoNotificationClient UwpNotificationAppService::OnTaskCanceled deferral complete error");
    }
    CloseConnection();
}

void NotificationAppService::OnServiceClosed(AppServiceConnection const&, AppServiceClosedEventArgs const&)
{
    appServiceLog.Info(L"AppService Closed");
    CompleteTask();
    CloseConnection();
}

} // namespace VelmoNotificationClient
