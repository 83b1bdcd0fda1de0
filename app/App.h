#pragma once
#include "app/AppTypes.h"

#include <winrt/Windows.ApplicationModel.Activation.h>
#include <winrt/Windows.ApplicationModel.Background.h>
#include <winrt/Windows.ApplicationModel.h>
#include <winrt/Windows.UI.Xaml.h>

namespace VelmoNotificationClient
{

// The application object, composed over the platform's Application. Constructing it sets up logging, before anything
// else can log. It shows no page; each override is one way in which the platform starts or wakes the app.
struct App : winrt::Windows::UI::Xaml::ApplicationT<App, winrt::Windows::UI::Xaml::Markup::IXamlMetadataProvider>,
             AppTypes
{
    static constexpr wchar_t className[] = L"VelmoNotificationClient.App";

    // Throws hresult_error when the platform's base or its Suspending event cannot be had.
    App();

    winrt::hstring GetRuntimeClassName() const override { return className; }

    // A user launch: starts the desktop component, waits 3 s on the calling thread, ends the app.
    void OnLaunched(winrt::Windows::ApplicationModel::Activation::LaunchActivatedEventArgs const& args);

    // Any other foreground activation: ends the app.
    void OnActivated(winrt::Windows::ApplicationModel::Activation::IActivatedEventArgs const& args);

    // A background activation: a connection of the desktop helper goes to NotificationAppService; one of the app's two
    // trigger tasks starts the desktop component and is completed when that has been started. Ends nothing: the
    // platform ends the process when it is not needed any more.
    void OnBackgroundActivated(winrt::Windows::ApplicationModel::Activation::BackgroundActivatedEventArgs const& args);

    // There is nothing to save: the app ends by itself after each foreground activation.
    void OnSuspending(winrt::Windows::Foundation::IInspectable const& sender,
                      winrt::Windows::ApplicationModel::SuspendingEventArgs const& args);

  private:
    void RunTriggerTask(winrt::Windows::ApplicationModel::Background::IBackgroundTaskInstance const& task);
};

} // namespace VelmoNotificationClient
