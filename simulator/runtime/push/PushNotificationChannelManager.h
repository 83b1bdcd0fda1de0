#pragma once
#include "simulator/runtime/Implements.h"

#include <winrt/Windows.Foundation.h>
#include <winrt/Windows.Networking.PushNotifications.h>

namespace sim
{

// The static members of Windows.Networking.PushNotifications.PushNotificationChannelManager.
struct PushNotificationChannelManagerFactory : Implements<PushNotificationChannelManagerFactory, IActivationFactory,
                                                          Pushes::IPushNotificationChannelManagerStatics>
{
    // The channel that there is, or a new one.
    Foundation::IAsyncOperation<Pushes::PushNotificationChannel> CreatePushNotificationChannelForApplicationAsync()
        const;

    NotImplemented CreatePushNotificationChannelForApplicationAsync(winrt::hstring const&) const { return {}; }
};

} // namespace sim
