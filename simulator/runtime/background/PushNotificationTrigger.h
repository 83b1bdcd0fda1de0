#pragma once
#include "simulator/runtime/Namespaces.h"
#include "simulator/runtime/Runtime.h"

#include <winrt/Windows.ApplicationModel.Background.h>

namespace sim
{

// A raw notification of the app's own channel.
struct PushNotificationTrigger : winrt::implements<PushNotificationTrigger, AppModel::Background::IBackgroundTrigger>
{
    using class_type = AppModel::Background::PushNotificationTrigger;
};

struct PushNotificationTriggerFactory : winrt::implements<PushNotificationTriggerFactory, IActivationFactory,
                                                          AppModel::Background::IPushNotificationTriggerFactory>
{
    IInspectable ActivateInstance() const { return Create({}); }

    // applicationId: of another app of the package, of which there is none.
    AppModel::Background::PushNotificationTrigger Create(winrt::hstring const&) const
    {
        ThrowIfStruck(L"PushNotificationTrigger.ActivateInstance");
        return winrt::make<PushNotificationTrigger>();
    }
};

} // namespace sim
