#pragma once
#include "simulator/runtime/Namespaces.h"
#include "simulator/runtime/Unserved.h"

#include <winrt/Windows.Foundation.h>
#include <winrt/Windows.Networking.PushNotifications.h>

namespace sim
{

// The static members of Windows.Networking.PushNotifications.PushNotificationChannelManager.
struct PushNotificationChannelManagerFactory
    : winrt::implements<PushNotificationChannelManagerFactory, IActivationFactory,
                        Pushes::IPushNotificationChannelManagerStatics>
{
    Unserved ActivateInstance() const { return {}; }

    // The channel that there is, or a new one.
    Foundation::IAsyncOperation<Pushes::PushNotificationChannel> CreatePushNotificationChannelForApplicationAsync()
        const;

    Unserved CreatePushNotificationChannelForApplicationAsync(winrt::hstring const&) const { return {}; }

    Unserved CreatePushNotificationChannelForSecondaryTileAsync(winrt::hstring const&) const { return {}; }
};

} // namespace sim
