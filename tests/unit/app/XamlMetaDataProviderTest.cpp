#include "app/XamlMetaDataProvider.h"
#include "app/MainPage.h"
#include "tests/unit/app/PageFixture.h"

#include <thread>
#include <winrt/Windows.Foundation.h>

using namespace winrt::Windows::UI::Xaml;
using test::ResultOf;
using VelmoNotificationClient::App;
using VelmoNotificationClient::XamlMetaDataProvider;
using winrt::Windows::Foundation::IInspectable;

namespace
{

constexpr wchar_t const* typeNames[] = {L"VelmoNotificationClient.MainPage", L"VelmoNotificationClient.App",
                                        L"Windows.UI.Xaml.Controls.Page", L"Windows.UI.Xaml.Controls.UserControl"};
constexpr std::uint32_t typeCount = std::size(typeNames);

Markup::IXamlMetadataProvider Provider()
{
    return winrt::make<XamlMetaDataProvider>();
}

TEST(XamlMetaDataProvider, TellsItsRuntimeClass)
{
    EXPECT_EQ(winrt::get_class_name(Provider()),
              L"VelmoNotificationClient.VelmoNotificationClient_uwp_XamlTypeInfo.XamlMetaDataProvider");
}

TEST(XamlMetaDataProvider, AnswersForEachOfItsTypesByName)
{
    auto const provider = Provider();
    for (auto const* name : typeNames)
    {
        auto const type = provider.GetXamlType(name);
        ASSERT_TRUE(type) << winrt::to_string(name);
        EXPECT_EQ(type.FullName(), name);
    }
}

TEST(XamlMetaDataProvider, AnswersForEachOfItsTypesByType)
{
    auto const provider = Provider();
    for (auto const* name : typeNames)
    {
        auto const type = provider.GetXamlType(Interop::TypeName{name, Interop::TypeKind::Metadata});
        ASSERT_TRUE(type) << winrt::to_string(name);
        EXPECT_EQ(type.FullName(), name);
        EXPECT_EQ(provider.GetXamlType(type.UnderlyingType()), type);
        EXPECT_EQ(type.UnderlyingType().Kind, Interop::TypeKind::Metadata);
    }
}

TEST(XamlMetaDataProvider, GivesNullForATypeThatItDoesNotKnow)
{
    auto const provider = Provider();
    for (auto const* name : {L"", L"VelmoNotificationClient.OtherPage", L"velmonotificationclient.mainpage",
                             L"MainPage", L"Windows.UI.Xaml.Controls.Grid", L"VelmoNotificationClient.MainPage "})
    {
        EXPECT_FALSE(provider.GetXamlType(name)) << winrt::to_string(name);
        EXPECT_FALSE(provider.GetXamlType(Interop::TypeName{name, Interop::TypeKind::Custom}));
    }
}

TEST(XamlMetaDataProvider, BuildsItsTableWithTheFirstQuestionAndKeepsIt)
{
    auto provider = Provider();
    auto const before = winrt::get_module_lock().load();
    provider.GetXmlnsDefinitions();
    EXPECT_EQ(winrt::get_module_lock().load(), before);
    provider.GetXamlType(L"Any.Type");
    EXPECT_EQ(winrt::get_module_lock().load(), before + typeCount);
    for (auto const* name : typeNames)
    {
        EXPECT_EQ(winrt::get_abi(provider.GetXamlType(name)), winrt::get_abi(provider.GetXamlType(name)));
    }
    EXPECT_EQ(winrt::get_module_lock().load(), before + typeCount);
    provider = nullptr;
    EXPECT_EQ(winrt::get_module_lock().load(), before - 1);
}

TEST(XamlMetaDataProvider, BuildsItsTableOnceForManyThreads)
{
    constexpr std::size_t threadCount = 8;
    auto const provider = Provider();
    auto const before = winrt::get_module_lock().load();
    std::vector<std::thread> threads;
    std::vector<Markup::IXamlType> types(threadCount);
    winrt::handle const mayAsk(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    for (auto& type : types)
    {
        threads.emplace_back([&] {
            WaitForSingleObject(mayAsk.get(), INFINITE);
            type = provider.GetXamlType(typeNames[0]);
        });
    }
    SetEvent(mayAsk.get());
    for (auto& thread : threads)
    {
        thread.join();
    }
    for (auto const& type : types)
    {
        EXPECT_EQ(winrt::get_abi(type), winrt::get_abi(types[0]));
    }
    EXPECT_EQ(winrt::get_module_lock().load(), before + typeCount);
}

TEST(XamlMetaDataProvider, TellsWhatTheTypesDeriveFrom)
{
    auto const provider = Provider();
    auto const page = provider.GetXamlType(L"VelmoNotificationClient.MainPage").BaseType();
    ASSERT_EQ(page, provider.GetXamlType(L"Windows.UI.Xaml.Controls.Page"));
    EXPECT_EQ(page.BaseType(), provider.GetXamlType(L"Windows.UI.Xaml.Controls.UserControl"));
    EXPECT_FALSE(page.BaseType().BaseType());
    EXPECT_FALSE(provider.GetXamlType(L"VelmoNotificationClient.App").BaseType());
}

TEST(XamlMetaDataProvider, LetsTheFrameworkMakeThePageAlone)
{
    auto const provider = Provider();
    EXPECT_TRUE(provider.GetXamlType(typeNames[0]).IsConstructible());
    for (std::size_t i = 1; i < typeCount; ++i)
    {
        auto const type = provider.GetXamlType(typeNames[i]);
        EXPECT_FALSE(type.IsConstructible());
        EXPECT_EQ(ResultOf([&] { type.ActivateInstance(); }), E_NOTIMPL);
    }
}

TEST(XamlMetaDataProvider, TellsOfNothingElse)
{
    auto const provider = Provider();
    for (auto const* name : typeNames)
    {
        auto const type = provider.GetXamlType(name);
        EXPECT_FALSE(type.IsArray() || type.IsCollection() || type.IsDictionary() || type.IsMarkupExtension());
        EXPECT_FALSE(type.IsBindable());
        EXPECT_FALSE(type.ContentProperty() || type.GetMember(L"Content"));
        EXPECT_FALSE(type.ItemType() || type.KeyType());
        EXPECT_EQ(ResultOf([&] { type.RunInitializer(); }), 0);
        EXPECT_EQ(ResultOf([&] { type.CreateFromString(L"x"); }), E_NOTIMPL);
        EXPECT_EQ(ResultOf([&] { type.AddToVector(nullptr, nullptr); }), E_NOTIMPL);
        EXPECT_EQ(ResultOf([&] { type.AddToMap(nullptr, nullptr, nullptr); }), E_NOTIMPL);
    }
    EXPECT_EQ(provider.GetXmlnsDefinitions().size(), 0u);
}

using XamlMetaDataProviderTypes = test::PageFixture;

TEST_F(XamlMetaDataProviderTypes, MakeANewPageEachTime)
{
    OnView([&](App&) {
        auto const type = Provider().GetXamlType(typeNames[0]);
        auto const page = type.ActivateInstance();
        EXPECT_EQ(winrt::get_class_name(page), typeNames[0]);
        EXPECT_EQ(Loads(), 1u); // not once more by who makes it
        EXPECT_NE(type.ActivateInstance(), page);
        EXPECT_EQ(Loads(), 2u);
    });
}

TEST_F(XamlMetaDataProviderTypes, AreToldByTheApplicationFromOneProvider)
{
    OnView([](App& app) {
        IInspectable const object = *app.get_strong();
        auto const provider = object.as<Markup::IXamlMetadataProvider>();
        provider.GetXamlType(typeNames[0]); // the process's first question makes it
        auto const before = winrt::get_module_lock().load();
        for (auto const* name : typeNames)
        {
            auto const type = provider.GetXamlType(name);
            ASSERT_TRUE(type) << winrt::to_string(name);
            EXPECT_EQ(provider.GetXamlType(type.UnderlyingType()), type);
        }
        EXPECT_FALSE(provider.GetXamlType(L"VelmoNotificationClient.OtherPage"));
        EXPECT_EQ(provider.GetXmlnsDefinitions().size(), 0u);
        EXPECT_EQ(winrt::get_module_lock().load(), before);
    });
}

TEST(XamlMetaDataProviderOfApp, HoldsNothingOfItsOwn)
{
    EXPECT_EQ(sizeof(App), sizeof(ApplicationT<App, Markup::IXamlMetadataProvider>));
}

} // namespace
