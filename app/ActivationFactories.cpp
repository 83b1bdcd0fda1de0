#include "app/ActivationFactories.h"

#include "app/MainPage.h"
#include "app/XamlMetaDataProvider.h"

#include <algorithm>
#include <windows.h>
#include <winrt/Windows.Foundation.h>

using winrt::Windows::Foundation::IActivationFactory;
using winrt::Windows::Foundation::IInspectable;

namespace VelmoNotificationClient
{

namespace
{

template <typename Class>
struct ClassFactory : winrt::implements<ClassFactory<Class>, IActivationFactory>
{
    IInspectable ActivateInstance() const { return winrt::make<Class>(); }
};

struct KnownClass
{
    std::wstring_view name;
    IActivationFactory (*makeFactory)();
};

template <typename Class>
constexpr KnownClass Known = {Class::className, [] { return winrt::make<ClassFactory<Class>>(); }};

constexpr KnownClass classes[] = {Known<MainPage>, Known<XamlMetaDataProvider>};

IActivationFactory FactoryOf(std::wstring_view className)
{
    auto const* const known = std::ranges::find(classes, className, &KnownClass::name);
    return known == std::end(classes) ? throw winrt::hresult_class_not_available() : known->makeFactory();
}

} // namespace

} // namespace VelmoNotificationClient

std::int32_t __stdcall DllGetActivationFactory(void* classId, void** factory) noexcept
{
    *factory = nullptr;
    try
    {
        winrt::hstring className;
        winrt::copy_from_abi(className, classId);
        *factory = winrt::detach_abi(VelmoNotificationClient::FactoryOf(className));
        return S_OK;
    }
    catch (...)
    {
        return winrt::to_hresult();
    }
}
