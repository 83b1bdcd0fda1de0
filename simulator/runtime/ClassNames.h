#pragma once

namespace sim
{

// The runtime classes that programs can ask the simulator for, as they are registered in a prefix.
inline constexpr wchar_t const* runtimeClassNames[] = {
    L"Windows.ApplicationModel.AppService.AppServiceConnection",
    L"Windows.ApplicationModel.Background.BackgroundTaskBuilder",
    L"Windows.ApplicationModel.Background.BackgroundTaskRegistration",
    L"Windows.ApplicationModel.Background.PushNotificationTrigger",
    L"Windows.ApplicationModel.Background.TimeTrigger",
    L"Windows.ApplicationModel.Core.CoreApplication",
    L"Windows.ApplicationModel.FullTrustProcessLauncher",
    L"Windows.Foundation.Collections.ValueSet",
    L"Windows.Foundation.PropertyValue",
    L"Windows.Foundation.Uri",
    L"Windows.Networking.PushNotifications.PushNotificationChannelManager",
    L"Windows.Storage.ApplicationData",
    L"Windows.UI.Xaml.Application",
    L"Windows.UI.Xaml.Controls.Page",
    L"Windows.UI.Xaml.Window",
};

} // namespace sim
