#pragma once
#include "service/SharedReference.h"

#include <winrt/Windows.ApplicationModel.Activation.h>
#include <winrt/Windows.ApplicationModel.AppService.h>
#include <winrt/Windows.ApplicationModel.Background.h>
#include <winrt/Windows.Foundation.h>

namespace VelmoNotificationClient
{

// The app's end of the app-service connection with the desktop helper. Objects of it carry nothing: the connection is
// class-wide, one per process, and so are the handlers. Failures are hresult_error unless said otherwise.
struct NotificationAppService : winrt::implements<NotificationAppService, winrt::Windows::Foundation::IInspectable>
{
    using AppServiceConnection = winrt::Windows::ApplicationModel::AppService::AppServiceConnection;
    using BackgroundTaskDeferral = winrt::Windows::ApplicationModel::Background::BackgroundTaskDeferral;

    winrt::hstring GetRuntimeClassName() const override { return L"VelmoNotificationClient.NotificationAppService"; }

    // Takes over the background task of an app-service activation: keeps it running, and serves its connection. An
    // earlier connection is let go as it is, neither closed nor completed. Called on the main view's thread.
    void ServiceNewConnection(
        winrt::Windows::ApplicationModel::Activation::BackgroundActivatedEventArgs const& args) const;

    // A request of the helper (service/OnRequestReceived.cpp). A thread of the platform's; "RegisterBackgroundTask"
    // blocks it for up to a minute.
    static void OnRequestReceived(
        AppServiceConnection const& sender,
        winrt::Windows::ApplicationModel::AppService::AppServiceRequestReceivedEventArgs const& args);

    // The end of the background task, or of the other end of the connection: both complete the task and close the
    // connection. They may come both, in either order, at the same time.
    static void OnTaskCanceled(
        winrt::Windows::ApplicationModel::Background::IBackgroundTaskInstance const& sender,
        winrt::Windows::ApplicationModel::Background::BackgroundTaskCancellationReason const& reason);
    static void OnServiceClosed(AppServiceConnection const& sender,
                                winrt::Windows::ApplicationModel::AppService::AppServiceClosedEventArgs const& args);

    // The connection of the helper that connected last, null without one, and what keeps its background task running.
    // The handlers of all connections share both without a lock. So a handler that comes late acts on what stands there
    // by then, even if that is another helper's; and of two that come together each may find the fields as they were.
    // The platform is assumed to take a second completion or closing. A handler clears a field only if what it has
    // completed or closed still stands there: a helper may have connected meanwhile. Neither is released when the
    // process exits, since handlers may still run.
    static SharedReference<AppServiceConnection> appServiceConnection;
    static SharedReference<BackgroundTaskDeferral> serviceDeferral;
};

} // namespace VelmoNotificationClient
