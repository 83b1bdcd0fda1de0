#pragma once
#include "app/AppTypes.h"

#include <winrt/Windows.ApplicationModel.Activation.h>
#include <winrt/Windows.ApplicationModel.Background.h>
#include <winrt/Windows.ApplicationModel.h>
#include <winrt/Windows.UI.Xaml.h>

namespace VelmoNotificationClient
{

// The application object, composed over the platform's Application. Its constructor sets up logging before other code
// can log. It shows no page; each override handles one way in which the platform starts or wakes the app.
struct App : winrt::Windows::UI::Xaml::ApplicationT<App, winrt::Windows::UI::Xaml::Markup::IXamlMetadataProvider>,
             AppTypes
{
    static constexpr wchar_t className[] = L"VelmoNotificationClient.App";

    // Throws hresult_error when the platform's base or its Suspending event is not available.
    App();

    winrt::hstring GetRuntimeClassName() const override { return className; }

    // A user launch: starts the desktop component, blocks the calling thread for 3 s, ends the app.
    void OnLaunched(winrt::Windows::ApplicationModel::Activation::LaunchActivatedEventArgs const& args);

    // Any other foreground activation: ends the app.
    void OnActivated(winrt::Windows::ApplicationModel::Activation::IActivatedEventArgs const& args);

    // A background activation. A connection of the desktop helper is passed to NotificationAppService; for the app's
    // two trigger tasks the desktop component is started, and the task completed when it has started. The platform ends
    // the process when it is idle.
    void OnBackgroundActivated(winrt::Windows::ApplicationModel::Activation::BackgroundActivatedEventArgs const& args);

    // No state to save: the app ends after each foreground activation.
    void OnSuspending(winrt::Windows::Foundation::IInspectable const& sender,
                      winrt::Windows::ApplicationModel::SuspendingEventArgs const& args);

  private:
    void RunTriggerTask(winrt::Windows::ApplicationModel::Background::IBackgroundTaskInstance const& task);
};

} // namespace VelmoNotificationClient
