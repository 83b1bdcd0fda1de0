#pragma once
#include "service/SharedReference.h"

#include <winrt/Windows.ApplicationModel.AppService.h>
#include <winrt/Windows.ApplicationModel.Background.h>
#include <winrt/Windows.Foundation.h>

namespace VelmoNotificationClient
{

// The connection to the helper that connected last, and the deferral that keeps its background task running: the
// class-wide state of NotificationAppService. Both are null while no helper is connected.
//
// The handlers of all connections share both fields without a lock. A handler that runs late acts on the current
// fields, even if they belong to another helper by then; two handlers that run at the same time may both find the
// fields set, so the platform must accept a second completion or closing. Neither object is released at process exit,
// since handlers may still run.
struct ActiveConnection
{
    using AppServiceConnection = winrt::Windows::ApplicationModel::AppService::AppServiceConnection;
    using BackgroundTaskDeferral = winrt::Windows::ApplicationModel::Background::BackgroundTaskDeferral;

    // Each does nothing while its field is null. Afterwards the field is cleared, unless a helper that connected
    // meanwhile has replaced the object. On failure the field keeps its value. Any thread. Throw hresult_error.
    static void CompleteTask();
    static void CloseConnection();

    static SharedReference<AppServiceConnection> appServiceConnection;
    static SharedReference<BackgroundTaskDeferral> serviceDeferral;
};

} // namespace VelmoNotificationClient
