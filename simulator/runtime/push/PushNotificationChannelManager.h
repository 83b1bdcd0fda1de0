#pragma once
#include "simulator/runtime/Namespaces.h"
#include "simulator/runtime/NotImplemented.h"

#include <winrt/Windows.Foundation.h>
#include <winrt/Windows.Networking.PushNotifications.h>

namespace sim
{

// The static members of Windows.Networking.PushNotifications.PushNotificationChannelManager.
struct PushNotificationChannelManagerFactory
    : winrt::implements<PushNotificationChannelManagerFactory, IActivationFactory,
                        Pushes::IPushNotificationChannelManagerStatics>
{
    NotImplemented ActivateInstance() const { return {}; }

    // The channel that there is, or a new one.
    Foundation::IAsyncOperation<Pushes::PushNotificationChannel> CreatePushNotificationChannelForApplicationAsync()
        const;

    NotImplemented CreatePushNotificationChannelForApplicationAsync(winrt::hstring const&) const { return {}; }

    NotImplemented CreatePushNotificationChannelForSecondaryTileAsync(winrt::hstring const&) const { return {}; }
};

} // namespace sim
