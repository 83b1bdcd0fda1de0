#include "simulator/runtime/Runtime.h"
#include "simulator/runtime/Application.h"
#include "simulator/runtime/CoreApplication.h"
#include "simulator/runtime/FullTrustProcessLauncher.h"
#include "simulator/runtime/Uri.h"
#include "simulator/runtime/Window.h"
#include "simulator/runtime/appservice/AppServiceConnection.h"
#include "simulator/runtime/background/BackgroundTaskBuilder.h"
#include "simulator/runtime/background/BackgroundTaskRegistration.h"
#include "simulator/runtime/background/PushNotificationTrigger.h"
#include "simulator/runtime/background/TimeTrigger.h"
#include "simulator/runtime/push/PushNotificationChannelManager.h"
#include "simulator/runtime/storage/ApplicationData.h"
#include "simulator/runtime/values/PropertyValue.h"
#include "simulator/runtime/values/ValueSet.h"
#include "simulator/runtime/xaml/Page.h"

#include <windows.h>

#include <algorithm>

namespace sim
{

namespace
{

struct KnownClass
{
    std::wstring_view name;
    IInspectable (*makeFactory)();
};

// Of a class whose objects are made without arguments.
template <typename T>
struct DefaultFactory : winrt::implements<DefaultFactory<T>, IActivationFactory>
{
    IInspectable ActivateInstance() const
    {
        ThrowIfStruck(CallOf<typename T::class_type>(L"ActivateInstance"));
        return winrt::make<T>();
    }
};

template <typename Factory>
IInspectable Make()
{
    return *winrt::make_self<Factory>();
}

constexpr KnownClass classes[] = {
    {L"Windows.ApplicationModel.AppService.AppServiceConnection", Make<DefaultFactory<AppServiceConnection>>},
    {L"Windows.ApplicationModel.Background.BackgroundTaskBuilder", Make<DefaultFactory<BackgroundTaskBuilder>>},
    {L"Windows.ApplicationModel.Background.BackgroundTaskRegistration", Make<BackgroundTaskRegistrationFactory>},
    {L"Windows.ApplicationModel.Background.PushNotificationTrigger", Make<PushNotificationTriggerFactory>},
    {L"Windows.ApplicationModel.Background.TimeTrigger", Make<TimeTriggerFactory>},
    {L"Windows.ApplicationModel.Core.CoreApplication", Make<CoreApplicationFactory>},
    {L"Windows.ApplicationModel.FullTrustProcessLauncher", Make<FullTrustProcessLauncherFactory>},
    {L"Windows.Foundation.Collections.ValueSet", Make<DefaultFactory<ValueSet>>},
    {L"Windows.Foundation.PropertyValue", Make<PropertyValueFactory>},
    {L"Windows.Foundation.Uri", Make<UriFactory>},
    {L"Windows.Networking.PushNotifications.PushNotificationChannelManager",
     Make<PushNotificationChannelManagerFactory>},
    {L"Windows.Storage.ApplicationData", Make<ApplicationDataFactory>},
    {L"Windows.UI.Xaml.Application", Make<ApplicationFactory>},
    {L"Windows.UI.Xaml.Controls.Page", Make<PageFactory>},
    {L"Windows.UI.Xaml.Window", Make<WindowFactory>},
};

KnownClass const* Find(std::wstring_view name) noexcept
{
    auto const* const found = std::ranges::find(classes, name, &KnownClass::name);
    return found == std::end(classes) ? nullptr : found;
}

} // namespace

bool StruckByNull(std::wstring_view call)
{
    auto const fault = CurrentHost().TakeFault(call);
    if (fault && fault->kind == FaultKind::Now)
    {
        throw winrt::hresult_error(fault->Result());
    }
    return fault && fault->kind == FaultKind::Null;
}

void ThrowIfStruck(std::wstring_view call)
{
    StruckByNull(call);
}

bool HasClass(std::wstring_view className) noexcept
{
    return Find(className) != nullptr;
}

std::int32_t GetFactory(std::wstring_view className, void** factory) noexcept
try
{
    *factory = nullptr;
    auto const* const known = Find(className);
    if (!known)
    {
        return REGDB_E_CLASSNOTREG;
    }
    ThrowIfStruck(LastPart(className));
    *factory = winrt::detach_abi(known->makeFactory());
    return S_OK;
}
catch (...)
{
    return winrt::to_hresult();
}

} // namespace sim
