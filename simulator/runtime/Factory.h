#pragma once
#include "simulator/runtime/Runtime.h"

#include <winrt/Windows.Foundation.h>

namespace sim
{

// The activation factories of the classes, each made in the source of its class.
IInspectable MakeAppServiceConnectionFactory();
IInspectable MakeBackgroundTaskBuilderFactory();
IInspectable MakeBackgroundTaskRegistrationFactory();
IInspectable MakePushNotificationTriggerFactory();
IInspectable MakeTimeTriggerFactory();
IInspectable MakeCoreApplicationFactory();
IInspectable MakeFullTrustProcessLauncherFactory();
IInspectable MakePropertyValueFactory();
IInspectable MakeUriFactory();
IInspectable MakePushNotificationChannelManagerFactory();
IInspectable MakeApplicationDataFactory();
IInspectable MakeApplicationFactory();
IInspectable MakePageFactory();
IInspectable MakeWindowFactory();

// The factory of a class whose objects are made without arguments.
template <typename T>
struct DefaultFactory : winrt::implements<DefaultFactory<T>, IActivationFactory>
{
    IInspectable ActivateInstance() const
    {
        InjectFault(CallOf<typename T::class_type>(L"ActivateInstance"));
        return winrt::make<T>();
    }

    static IInspectable Make() { return winrt::make<DefaultFactory>(); }
};

} // namespace sim
