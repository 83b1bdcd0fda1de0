#pragma once
#include <winrt/Windows.ApplicationModel.Activation.h>
#include <winrt/Windows.ApplicationModel.h>
#include <winrt/Windows.UI.Xaml.h>

namespace VelmoNotificationClient
{

// The application object, composed over the platform's Application. Constructing it sets up logging, before anything
// else can log. It shows no page; each override is one way in which the platform starts or wakes the app.
struct App : winrt::Windows::UI::Xaml::ApplicationT<App>
{
    // Throws hresult_error when the platform's base or its Suspending event cannot be had.
    App();

    winrt::hstring GetRuntimeClassName() const override { return L"VelmoNotificationClient.App"; }

    // A user launch: starts the desktop component, waits 3 s on the calling thread, ends the app.
    void OnLaunched(winrt::Windows::ApplicationModel::Activation::LaunchActivatedEventArgs const& args);

    // Any other foreground activation: ends the app.
    void OnActivated(winrt::Windows::ApplicationModel::Activation::IActivatedEventArgs const& args);

    // There is nothing to save: the app ends by itself after each foreground activation.
    void OnSuspending(winrt::Windows::Foundation::IInspectable const& sender,
                      winrt::Windows::ApplicationModel::SuspendingEventArgs const& args);
};

} // namespace VelmoNotificationClient
