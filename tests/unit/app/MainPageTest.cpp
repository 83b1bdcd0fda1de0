#include "app/MainPage.h"
#include "app/ActivationFactories.h"
#include "app/XamlMetaDataProvider.h"
#include "simulator/runtime/Implements.h"
#include "tests/support/Files.h"
#include "tests/unit/app/PageFixture.h"

#include <utility>
#include <winrt/Windows.Foundation.h>
#include <winrt/Windows.UI.Xaml.Controls.Primitives.h>
#include <winrt/Windows.UI.Xaml.Interop.h>

using namespace winrt::Windows::UI::Xaml;
using test::ResultOf;
using VelmoNotificationClient::App;
using VelmoNotificationClient::MainPage;
using winrt::Windows::Foundation::IActivationFactory;
using winrt::Windows::Foundation::IInspectable;

namespace
{

constexpr auto parseFailed = static_cast<std::int32_t>(0x802B000A);
constexpr auto fail = static_cast<std::int32_t>(0x80004005);

using MainPages = test::PageFixture;

IActivationFactory Factory()
{
    winrt::hstring const className(MainPage::className);
    IActivationFactory factory;
    winrt::check_hresult(DllGetActivationFactory(winrt::get_abi(className), winrt::put_abi(factory)));
    return factory;
}

void MakeByProvider(App& app)
{
    IInspectable const object = *app.get_strong();
    object.as<Markup::IXamlMetadataProvider>().GetXamlType(MainPage::className).ActivateInstance();
}

// What winrt::make calls after the constructor does nothing here.
struct ConstructedPage : MainPage
{
    void InitializeComponent() const noexcept {}
};

winrt::com_ptr<MainPage> Construct()
{
    return winrt::make_self<ConstructedPage>();
}

TEST_F(MainPages, LoadTheirMarkupWhenTheyAreConstructed)
{
    OnView([&](App&) {
        auto const page = Construct();
        ASSERT_TRUE(page->Content());
        EXPECT_EQ(winrt::get_class_name(page->Content()), L"Windows.UI.Xaml.Controls.Grid");
    });
    EXPECT_EQ(Reported(L"markup-loaded"),
              std::vector<std::wstring>{L"markup-loaded uri=ms-appx:///MainPage.xaml resources=application"});
}

TEST_F(MainPages, LoadTheirMarkupOnceEach)
{
    OnView([&](App&) {
        auto const page = winrt::make_self<MainPage>();
        page->InitializeComponent();
        page->InitializeComponent();
        EXPECT_EQ(Loads(), 1u);
        auto const another = winrt::make_self<MainPage>();
        EXPECT_EQ(Loads(), 2u);
    });
}

// A loader that asks the page to initialise itself while it loads.
struct ReentrantLoader : sim::Implements<ReentrantLoader, IApplicationStatics>
{
    // While it lives, it stands in the place of the platform's.
    class InPlace
    {
      public:
        explicit InPlace(ReentrantLoader& loader)
        {
            s_loader = &loader;
            s_next = std::exchange(winrt_activation_handler, GetFactory);
            winrt::clear_factory_cache();
        }

        InPlace(InPlace const&) = delete;
        InPlace& operator=(InPlace const&) = delete;

        ~InPlace()
        {
            winrt_activation_handler = s_next;
            winrt::clear_factory_cache();
        }

      private:
        static std::int32_t __stdcall GetFactory(void* classId, winrt::guid const& id, void** factory) noexcept
        {
            winrt::hstring name;
            winrt::copy_from_abi(name, classId);
            return name == winrt::name_of<Application>() ? s_loader->QueryInterface(id, factory)
                                                         : s_next(classId, id, factory);
        }

        static inline ReentrantLoader* s_loader = nullptr;
        static inline decltype(winrt_activation_handler) s_next = nullptr;
    };

    void LoadComponent(IInspectable const& page, winrt::Windows::Foundation::Uri const&,
                       Controls::Primitives::ComponentResourceLocation = {})
    {
        constexpr int enough = 3;
        if (++loads < enough)
        {
            winrt::get_self<MainPage>(page.as<Markup::IComponentConnector>())->InitializeComponent();
        }
    }

    int loads = 0;
};

TEST_F(MainPages, LoadTheirMarkupOnceAlsoWhenTheyAreInitialisedWhileItLoads)
{
    auto const loader = winrt::make_self<ReentrantLoader>();
    OnView([&](App&) {
        ReentrantLoader::InPlace const inPlace(*loader);
        winrt::make<MainPage>();
    });
    EXPECT_EQ(loader->loads, 1);
}

TEST_F(MainPages, AreOnePlatformPageOfTheirClass)
{
    OnView([](App&) {
        Controls::Page const page = winrt::make<MainPage>();
        EXPECT_EQ(winrt::get_class_name(page), L"VelmoNotificationClient.MainPage");
        EXPECT_EQ(page.as<IInspectable>(), Controls::UserControl(page).as<IInspectable>());
        page.as<Controls::IPageOverrides>().OnNavigatedTo(nullptr);
    });
}

TEST_F(MainPages, TakeWhatTheLoaderConnectsAndIgnoreIt)
{
    OnView([](App&) {
        auto const connector = winrt::make<MainPage>().as<Markup::IComponentConnector>();
        EXPECT_EQ(ResultOf([&] { connector.Connect(1, connector); }), 0);
    });
}

TEST_F(MainPages, LeaveNothingBehindWhenLoadingFails)
{
    host.SetFault(L"Application.LoadComponent now 0x80004005");
    OnView([](App&) {
        ResultOf(Construct); // what errors and factories keep is there from here on
        auto const before = winrt::get_module_lock().load();
        EXPECT_EQ(ResultOf(Construct), fail);
        EXPECT_EQ(winrt::get_module_lock().load(), before);
    });
}

TEST_F(MainPages, AreMadeByTheFrameworkThroughTheApplication)
{
    host.RequestPage(MainPage::className);
    host.OpenUri(L"velmo-notification:");
    Application::Start([](auto&&) { winrt::make<App>(); });
    EXPECT_EQ(Reported(L"page-made"),
              std::vector<std::wstring>{L"page-made by=provider class=VelmoNotificationClient.MainPage"});
    EXPECT_EQ(Loads(), 1u);
}

TEST_F(MainPages, GiveTheFrameworkTheFailureOfTheirConstructorAndTheAppGoesOn)
{
    host.SetFault(L"Application.LoadComponent now 0x80070005");
    host.RequestPage(MainPage::className);
    host.OpenUri(L"velmo-notification:");
    Application::Start([](auto&&) { winrt::make<App>(); });
    auto const failures = Reported(L"page-failed");
    ASSERT_FALSE(failures.empty());
    EXPECT_EQ(failures.back(), L"page-failed by=provider class=VelmoNotificationClient.MainPage result=0x80070005");
    EXPECT_TRUE(host.HasExited());
    EXPECT_EQ(host.Failure(), std::nullopt);
}

// Each call of the platform that makes a page takes, failing, and what its failure is.
struct Failure
{
    wchar_t const* fault;
    std::int32_t result;
};

void PrintTo(Failure const& failure, std::ostream* out)
{
    *out << winrt::to_string(failure.fault);
}

class MainPagesThatFail : public MainPages, public testing::WithParamInterface<Failure>
{
  protected:
    MainPagesThatFail() { host.SetFault(GetParam().fault); }
};

TEST_P(MainPagesThatFail, GiveTheFailureToTheCallerOfTheConstructor)
{
    OnView([](App&) { EXPECT_EQ(ResultOf(Construct), GetParam().result); });
}

TEST_P(MainPagesThatFail, PassTheFailureToTheCallerOfTheFactory)
{
    OnView([](App&) {
        auto const factory = Factory();
        EXPECT_EQ(ResultOf([&] { factory.ActivateInstance<IInspectable>(); }), GetParam().result);
    });
}

TEST_P(MainPagesThatFail, GiveItToTheFrameworkThroughTheProvider)
{
    OnView([](App& app) { EXPECT_EQ(ResultOf([&] { MakeByProvider(app); }), GetParam().result); });
}

INSTANTIATE_TEST_SUITE_P(Calls, MainPagesThatFail,
                         testing::Values(Failure{L"Page now 0x80040154", REGDB_E_CLASSNOTREG},
                                         Failure{L"Page.CreateInstance now 0x80004005", fail},
                                         Failure{L"Uri now 0x80040154", REGDB_E_CLASSNOTREG},
                                         Failure{L"Uri.CreateUri now 0x80070057", E_INVALIDARG},
                                         Failure{L"Uri.CreateUri null", E_POINTER},
                                         Failure{L"Application.LoadComponent now 0x802B000A", parseFailed},
                                         Failure{L"Application.LoadComponent now 0x80070005", E_ACCESSDENIED}));

TEST_F(MainPages, CannotBeMadeWithoutTheirMarkup)
{
    DeleteFileW((package / L"MainPage.xaml").c_str());
    OnView([](App& app) {
        EXPECT_EQ(ResultOf(Construct), parseFailed);
        EXPECT_EQ(ResultOf([&] { MakeByProvider(app); }), parseFailed);
    });
    EXPECT_EQ(Loads(), 0u);
}

TEST_F(MainPages, CannotBeMadeWithBrokenMarkup)
{
    test::WriteBytes(package / L"MainPage.xaml", "<Page");
    OnView([](App& app) {
        EXPECT_EQ(ResultOf(Construct), parseFailed);
        EXPECT_EQ(ResultOf([&] { MakeByProvider(app); }), parseFailed);
    });
    EXPECT_EQ(Loads(), 0u);
}

} // namespace
