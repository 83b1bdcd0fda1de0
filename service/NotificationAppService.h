#pragma once
#include "service/ActiveConnection.h"

#include <winrt/Windows.ApplicationModel.Activation.h>
#include <winrt/Windows.ApplicationModel.AppService.h>
#include <winrt/Windows.ApplicationModel.Background.h>
#include <winrt/Windows.Foundation.h>

namespace VelmoNotificationClient
{

// The app's end of the app-service connection with the desktop helper. Instances hold no data: the connection is
// class-wide, one per process (ActiveConnection), and so are the handlers.
//
// Platform failures are hresult_error, but for E_OUTOFMEMORY, which is std::bad_alloc. Nothing else is thrown in
// service/, so its guards are catch (...). The functions below throw these unless stated otherwise.
struct NotificationAppService : winrt::implements<NotificationAppService, winrt::Windows::Foundation::IInspectable>,
                                ActiveConnection
{
    winrt::hstring GetRuntimeClassName() const override { return L"VelmoNotificationClient.NotificationAppService"; }

    // Keeps the background task of an app-service activation running and serves its connection. The references to an
    // earlier connection are released without closing or completing it. UI thread.
    void ServiceNewConnection(
        winrt::Windows::ApplicationModel::Activation::BackgroundActivatedEventArgs const& args) const;

    // Handles a request of the helper (service/OnRequestReceived.cpp). Platform thread; "RegisterBackgroundTask" blocks
    // it for up to a minute.
    static void OnRequestReceived(
        AppServiceConnection const& sender,
        winrt::Windows::ApplicationModel::AppService::AppServiceRequestReceivedEventArgs const& args);

    // The background task is cancelled, or the helper has closed its end. Both complete the task and close the
    // connection. Platform threads; both may run, in either order, at the same time.
    static void OnTaskCanceled(
        winrt::Windows::ApplicationModel::Background::IBackgroundTaskInstance const& sender,
        winrt::Windows::ApplicationModel::Background::BackgroundTaskCancellationReason const& reason);
    static void OnServiceClosed(AppServiceConnection const& sender,
                                winrt::Windows::ApplicationModel::AppService::AppServiceClosedEventArgs const& args);
};

} // namespace VelmoNotificationClient
