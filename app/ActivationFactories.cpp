#include "app/ActivationFactories.h"

#include "app/MainPage.h"
#include "app/XamlMetaDataProvider.h"

#include <algorithm>
#include <winrt/Windows.Foundation.h>

using winrt::Windows::Foundation::IActivationFactory;
using winrt::Windows::Foundation::IInspectable;

namespace VelmoNotificationClient
{

namespace
{

struct KnownClass
{
    std::wstring_view name;
    IInspectable (*make)();
};

template <typename Class>
IInspectable Make()
{
    return winrt::make<Class>();
}

constexpr KnownClass classes[] = {
    {MainPage::className, Make<MainPage>},
    {XamlMetaDataProvider::className, Make<XamlMetaDataProvider>},
};

struct ClassFactory : winrt::implements<ClassFactory, IActivationFactory>
{
    explicit ClassFactory(KnownClass const& known) : m_known(known) {}

    IInspectable ActivateInstance() const { return m_known.make(); }

  private:
    KnownClass const& m_known;
};

IActivationFactory FactoryOf(std::wstring_view className)
{
    auto const* const known = std::ranges::find(classes, className, &KnownClass::name);
    return known == std::end(classes) ? throw winrt::hresult_class_not_available() : winrt::make<ClassFactory>(*known);
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
