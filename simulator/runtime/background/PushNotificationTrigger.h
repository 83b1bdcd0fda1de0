#pragma once
#include "simulator/runtime/Namespaces.h"
#include "simulator/runtime/Runtime.h"

#include <winrt/Windows.ApplicationModel.Background.h>

namespace sim
{

// A raw notification of the app's own channel.
struct PushNotificationTrigger : winrt::implements<PushNotificationTrigger, Background::IBackgroundTrigger>
{
    using class_type = Background::PushNotificationTrigger;
};

struct PushNotificationTriggerFactory
    : winrt::implements<PushNotificationTriggerFactory, IActivationFactory, Background::IPushNotificationTriggerFactory>
{
    IInspectable ActivateInstance() const { return Create({}); }

    // applicationId: of another app of the package, of which there is none.
    Background::PushNotificationTrigger Create(winrt::hstring const&) const
    {
        ThrowIfStruck(L"PushNotificationTrigger.ActivateInstance");
        return winrt::make<PushNotificationTrigger>();
    }
};

} // namespace sim
