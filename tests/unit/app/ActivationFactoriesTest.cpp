#include "app/ActivationFactories.h"
#include "tests/unit/app/PageFixture.h"

#include <winrt/Windows.Foundation.h>
#include <winrt/Windows.UI.Xaml.Controls.h>

using VelmoNotificationClient::App;
using winrt::Windows::Foundation::IActivationFactory;
using winrt::Windows::Foundation::IInspectable;

namespace
{

constexpr wchar_t pageName[] = L"VelmoNotificationClient.MainPage";
constexpr wchar_t providerName[] =
    L"VelmoNotificationClient.VelmoNotificationClient_uwp_XamlTypeInfo.XamlMetaDataProvider";

IActivationFactory FactoryOf(winrt::hstring const& className)
{
    IActivationFactory factory;
    winrt::check_hresult(DllGetActivationFactory(winrt::get_abi(className), winrt::put_abi(factory)));
    return factory;
}

using ActivationFactories = test::PageFixture;

TEST_F(ActivationFactories, MakeThePageByItsName)
{
    OnView([&](App&) {
        auto const page = FactoryOf(pageName).ActivateInstance<winrt::Windows::UI::Xaml::Controls::Page>();
        EXPECT_EQ(winrt::get_class_name(page), pageName);
        EXPECT_EQ(Loads(), 1u);
    });
}

TEST(ActivationFactoriesByName, MakesTheTypeInformationProviderByItsName)
{
    auto const factory = FactoryOf(providerName);
    auto const provider = factory.ActivateInstance<winrt::Windows::UI::Xaml::Markup::IXamlMetadataProvider>();
    EXPECT_EQ(winrt::get_class_name(provider), providerName);
    EXPECT_TRUE(provider.GetXamlType(pageName));
    EXPECT_NE(factory.ActivateInstance<IInspectable>(), provider);
}

TEST(ActivationFactoriesByName, IsThereForNoOtherClass)
{
    for (auto const* name : {L"", L"VelmoNotificationClient.App", L"VelmoNotificationClient.OtherPage",
                             L"velmonotificationclient.mainpage", L"Windows.UI.Xaml.Controls.Page"})
    {
        winrt::hstring const className(name);
        void* factory = &factory;
        EXPECT_EQ(DllGetActivationFactory(winrt::get_abi(className), &factory), CLASS_E_CLASSNOTAVAILABLE)
            << winrt::to_string(name);
        EXPECT_EQ(factory, nullptr);
    }
}

} // namespace
