#include "simulator/runtime/Runtime.h"

#include "simulator/runtime/Factory.h"
#include "simulator/runtime/values/ValueSet.h"

#include <algorithm>
#include <ranges>
#include <windows.h>
#include <winrt/Windows.ApplicationModel.AppService.h>
#include <winrt/Windows.ApplicationModel.Background.h>
#include <winrt/Windows.ApplicationModel.Core.h>
#include <winrt/Windows.Foundation.Collections.h>
#include <winrt/Windows.Networking.PushNotifications.h>
#include <winrt/Windows.Storage.h>
#include <winrt/Windows.UI.Xaml.Controls.h>

namespace sim
{

namespace
{

struct KnownClass
{
    std::wstring_view name;
    IInspectable (*makeFactory)();
};

constexpr KnownClass classes[] = {
    {winrt::name_of<AppService::AppServiceConnection>(), MakeAppServiceConnectionFactory},
    {winrt::name_of<Background::BackgroundTaskBuilder>(), MakeBackgroundTaskBuilderFactory},
    {winrt::name_of<Background::BackgroundTaskRegistration>(), MakeBackgroundTaskRegistrationFactory},
    {winrt::name_of<Background::PushNotificationTrigger>(), MakePushNotificationTriggerFactory},
    {winrt::name_of<Background::TimeTrigger>(), MakeTimeTriggerFactory},
    {winrt::name_of<AppModel::Core::CoreApplication>(), MakeCoreApplicationFactory},
    {winrt::name_of<AppModel::FullTrustProcessLauncher>(), MakeFullTrustProcessLauncherFactory},
    {winrt::name_of<Collections::ValueSet>(), DefaultFactory<ValueSet>::Make},
    {winrt::name_of<Foundation::PropertyValue>(), MakePropertyValueFactory},
    {winrt::name_of<Foundation::Uri>(), MakeUriFactory},
    {winrt::name_of<Pushes::PushNotificationChannelManager>(), MakePushNotificationChannelManagerFactory},
    {winrt::name_of<Storage::ApplicationData>(), MakeApplicationDataFactory},
    {winrt::name_of<Xaml::Application>(), MakeApplicationFactory},
    {winrt::name_of<Xaml::Controls::Page>(), MakePageFactory},
    {winrt::name_of<Xaml::Window>(), MakeWindowFactory},
};

KnownClass const* Find(std::wstring_view name) noexcept
{
    auto const* const found = std::ranges::find(classes, name, &KnownClass::name);
    return found == std::end(classes) ? nullptr : found;
}

} // namespace

bool InjectFault(std::wstring_view call)
{
    auto const fault = CurrentHost().TakeFault(call);
    if (fault && fault->kind == FaultKind::Now)
    {
        throw winrt::hresult_error(fault->Result());
    }
    return fault && fault->kind == FaultKind::Null;
}

std::vector<std::wstring_view> ClassNames()
{
    auto const names = classes | std::views::transform(&KnownClass::name);
    return {names.begin(), names.end()};
}

bool HasClass(std::wstring_view className) noexcept
{
    return Find(className) != nullptr;
}

std::int32_t GetFactory(std::wstring_view className, void** factory) noexcept
try
{
    *factory = nullptr;
    auto const* const found = Find(className);
    if (!found)
    {
        return REGDB_E_CLASSNOTREG;
    }
    InjectFault(LastPart(className));
    *factory = winrt::detach_abi(found->makeFactory());
    return S_OK;
}
catch (...)
{
    return winrt::to_hresult();
}

} // namespace sim
