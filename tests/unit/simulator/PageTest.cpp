#include "tests/support/Files.h"
#include "tests/unit/simulator/ViewFixture.h"

#include <thread>
#include <windows.h>
#include <winrt/Windows.Foundation.h>
#include <winrt/Windows.UI.Xaml.Controls.Primitives.h>
#include <winrt/Windows.UI.Xaml.Controls.h>

using namespace winrt::Windows::UI::Xaml;
using winrt::Windows::Foundation::IInspectable;
using winrt::Windows::Foundation::Uri;

namespace
{

constexpr auto parseFailed = static_cast<std::int32_t>(0x802B000A);
constexpr wchar_t address[] = L"ms-appx:///Folder/A.xaml";

struct APage : Controls::PageT<APage>
{
    winrt::hstring GetRuntimeClassName() const override { return L"Tests.APage"; }
};

std::string MarkupOf(std::string const& attributes, std::string const& content)
{
    return R"(<Page xmlns="http://schemas.microsoft.com/winfx/2006/xaml/presentation")"
           R"( xmlns:x="http://schemas.microsoft.com/winfx/2006/xaml" )" +
           attributes + ">" + content + "</Page>";
}

class Pages : public ViewFixture
{
  protected:
    Pages() { CreateDirectoryW((m_package / L"Folder").c_str(), nullptr); }

    void Write(std::string const& markup) const { test::WriteBytes(m_package / L"Folder\\A.xaml", markup); }

    // The result of loading that markup into a page, and what was reported of it.
    std::int32_t Load(std::string const& markup)
    {
        Write(markup);
        return ResultOnView([] { Application::LoadComponent(winrt::make<APage>(), Uri(address)); });
    }

    // The last report that markup was not loaded; every page that was to be loaded has made one.
    sim::Event LastFailure() { return m_host.WaitForReport(L"markup-failed", ++m_failures); }

    std::size_t m_failures = 0;
};

} // namespace

TEST_F(Pages, GetTheContentThatTheirMarkupDescribes)
{
    Write(MarkupOf("x:Class='Tests.APage'", "<Grid><TextBlock/><StackPanel><TextBlock/></StackPanel></Grid>"));
    OnView([] {
        auto const page = winrt::make<APage>();
        EXPECT_FALSE(page.Content());
        Application::LoadComponent(page, Uri(address));
        EXPECT_EQ(winrt::get_class_name(page.Content()), L"Windows.UI.Xaml.Controls.Grid");
    });
    EXPECT_EQ(Reports(), (std::vector<std::wstring>{L"markup-loaded uri=ms-appx:///Folder/A.xaml resources=application",
                                                    L"app-crashed pid=1 code=0"}));
}

TEST_F(Pages, MayBeEmptyAndOfNoClass)
{
    Write(MarkupOf("", ""));
    OnView([] {
        auto const page = winrt::make<APage>();
        Application::LoadComponent(page, Uri(address));
        EXPECT_FALSE(page.Content());
    });
}

TEST_F(Pages, AreLoadedFromTheApplicationsResourcesAndFromOthersAlike)
{
    using Controls::Primitives::ComponentResourceLocation;
    Write(MarkupOf("", "<Grid/>"));
    OnView([] {
        for (auto const location : {ComponentResourceLocation::Application, ComponentResourceLocation::Nested})
        {
            auto const page = winrt::make<APage>();
            Application::LoadComponent(page, Uri(address), location);
            EXPECT_TRUE(page.Content());
        }
    });
}

TEST_F(Pages, AreMadeOfThePlatformsClassAlone)
{
    OnView([] {
        Controls::Page const page;
        EXPECT_EQ(winrt::get_class_name(page), L"Windows.UI.Xaml.Controls.Page");
    });
}

TEST_F(Pages, FailToLoadBrokenMarkupAndSayWhy)
{
    struct Broken
    {
        std::string markup;
        std::wstring reason; // after the file's address
    };

    std::wstring const noPage = L"its root is no <Page> of http://schemas.microsoft.com/winfx/2006/xaml/presentation";
    std::vector<Broken> const all = {
        {"<Grid xmlns='http://schemas.microsoft.com/winfx/2006/xaml/presentation'/>", noPage},
        {"<Page/>", noPage},
        {MarkupOf("x:Class='Tests.Other'", ""), L"it is of the class Tests.Other, not of Tests.APage"},
        {MarkupOf("", "<Grid/><Grid/>"), L"a <Page> has one content"},
        {MarkupOf("", "<Gird/>"), L"there is no element <Gird>"},
        {MarkupOf("", "<Grid><x:Grid/></Grid>"), L"there is no element <Grid>"}};
    for (auto const& broken : all)
    {
        EXPECT_EQ(Load(broken.markup), parseFailed) << broken.markup;
        EXPECT_EQ(LastFailure().details.back(), L"reason=" + broken.reason);
    }
    for (auto const* text : {"", "<Page", "x"})
    {
        EXPECT_EQ(Load(text), parseFailed) << text;
        EXPECT_NE(LastFailure().Text().find(L"is not well-formed XML"), std::wstring::npos);
    }
}

TEST_F(Pages, KeepTheirContentWhenLoadingFails)
{
    Write(MarkupOf("", "<Grid/>"));
    OnView([&] {
        auto const page = winrt::make<APage>();
        Application::LoadComponent(page, Uri(address));
        auto const content = page.Content();
        Write("<Page");
        EXPECT_THROW(Application::LoadComponent(page, Uri(address)), winrt::hresult_error);
        EXPECT_EQ(page.Content(), content);
    });
}

TEST_F(Pages, FailToLoadWhatThePackageDoesNotHave)
{
    for (auto const* missing : {L"ms-appx:///B.xaml", L"ms-appx:///Folder", L"ms-appx:///", L"http:///Folder/A.xaml",
                                L"ms-appx://other/Folder/A.xaml"})
    {
        Write(MarkupOf("", ""));
        EXPECT_EQ(ResultOnView([&] { Application::LoadComponent(winrt::make<APage>(), Uri(missing)); }), parseFailed);
        EXPECT_EQ(LastFailure().kind, L"markup-failed");
    }
}

TEST_F(Pages, AreAllThatIsLoaded)
{
    Write(MarkupOf("", ""));
    EXPECT_EQ(ResultOnView([] { Application::LoadComponent(Uri(address), Uri(address)); }), parseFailed);
}

TEST_F(Pages, AreNotLoadedWithoutAComponentOrAnAddress)
{
    EXPECT_EQ(ResultOnView([] { Application::LoadComponent(nullptr, Uri(address)); }), E_POINTER);
    EXPECT_EQ(ResultOnView([] { Application::LoadComponent(winrt::make<APage>(), nullptr); }), E_POINTER);
}

TEST_F(Pages, AreNotLoadedWithoutAPackage)
{
    m_host.SetPackageFolder(L"");
    EXPECT_EQ(ResultOnView([] { Application::LoadComponent(winrt::make<APage>(), Uri(address)); }),
              HRESULT_FROM_WIN32(APPMODEL_ERROR_NO_PACKAGE));
}

TEST_F(Pages, BelongToTheMainViewsThread)
{
    Write(MarkupOf("", "<Grid/>"));
    OnView([] {
        auto const page = winrt::make<APage>();
        std::thread([&] {
            for (auto const& call : std::initializer_list<std::function<void()>>{
                     [] { winrt::make<APage>(); }, [&] { Application::LoadComponent(page, Uri(address)); }})
            {
                try
                {
                    call();
                    ADD_FAILURE();
                }
                catch (winrt::hresult_error const& error)
                {
                    EXPECT_EQ(error.code(), RPC_E_WRONG_THREAD);
                }
            }
        }).join();
        EXPECT_FALSE(page.Content());
    });
}
