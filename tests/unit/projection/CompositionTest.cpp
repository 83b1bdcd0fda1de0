#include "tests/unit/projection/TestPlatform.h"

#include <winrt/Windows.ApplicationModel.Activation.h>
#include <winrt/Windows.ApplicationModel.h>
#include <winrt/Windows.Foundation.h>
#include <winrt/Windows.UI.Xaml.Markup.h>
#include <winrt/Windows.UI.Xaml.h>

#include <gtest/gtest.h>

using namespace test;
using namespace winrt;
using namespace Windows::ApplicationModel::Activation;
using namespace Windows::Foundation;
using namespace Windows::UI::Xaml;
using SuspendingEventArgs = Windows::ApplicationModel::SuspendingEventArgs;

namespace
{

// The platform's Application, as far as these tests need it.
struct PlatformApplication
    : implements<PlatformApplication, IApplication, IApplicationOverrides, IApplicationOverrides2, composable>
{
    Windows::UI::Xaml::ResourceDictionary Resources() const { return nullptr; }
    void Resources(Windows::UI::Xaml::ResourceDictionary const&) const {}
    Windows::UI::Xaml::DebugSettings DebugSettings() const { return nullptr; }
    ApplicationTheme RequestedTheme() const { return {}; }
    void RequestedTheme(ApplicationTheme) const {}
    event_token UnhandledException(UnhandledExceptionEventHandler const&) const { return {}; }
    void UnhandledException(event_token) const {}
    event_token Suspending(SuspendingEventHandler const& handler) { return suspending.add(handler); }
    void Suspending(event_token token) { suspending.remove(token); }
    event_token Resuming(EventHandler<Windows::Foundation::IInspectable> const&) const { return {}; }
    void Resuming(event_token) const {}
    void Exit() { ++exits; }

    void OnActivated(IActivatedEventArgs const&) { calls += L"activated "; }
    void OnLaunched(LaunchActivatedEventArgs const&) { calls += L"launched "; }
    void OnFileActivated(FileActivatedEventArgs const&) { throw hresult_access_denied(); }
    void OnSearchActivated(SearchActivatedEventArgs const&) {}
    void OnShareTargetActivated(ShareTargetActivatedEventArgs const&) {}
    void OnFileOpenPickerActivated(FileOpenPickerActivatedEventArgs const&) {}
    void OnFileSavePickerActivated(FileSavePickerActivatedEventArgs const&) {}
    void OnCachedFileUpdaterActivated(CachedFileUpdaterActivatedEventArgs const&) {}
    void OnWindowCreated(WindowCreatedEventArgs const&) {}
    void OnBackgroundActivated(BackgroundActivatedEventArgs const&) { calls += L"background "; }

    winrt::event<SuspendingEventHandler> suspending;
    std::wstring calls;
    int exits = 0;
    Alive alive;
};

struct PlatformFactory : implements<PlatformFactory, Windows::Foundation::IActivationFactory, IApplicationFactory>
{
    Windows::Foundation::IInspectable ActivateInstance() const { throw hresult_not_implemented(); }

    Application CreateInstance(Windows::Foundation::IInspectable const& outer, Windows::Foundation::IInspectable& inner)
    {
        return impl::composable_factory<PlatformApplication>::CreateInstance<Application>(outer, inner);
    }
};

struct App : ApplicationT<App, Markup::IComponentConnector>
{
    App() { Suspending({get_weak(), &App::OnSuspending}); }

    hstring GetRuntimeClassName() const override { return L"Tests.App"; }
    void OnLaunched(LaunchActivatedEventArgs const&) { ++launches; }
    void OnSuspending(Windows::Foundation::IInspectable const&, SuspendingEventArgs const&) { ++suspensions; }
    void Connect(int32_t, Windows::Foundation::IInspectable const&) const {}

    int launches = 0;
    int suspensions = 0;
    Alive alive;
};

class Composition : public testing::Test
{
  protected:
    Composition()
    {
        platform.Provide(L"Windows.UI.Xaml.Application", [] { return make<PlatformFactory>(); });
    }

    static PlatformApplication* InnerOf(Application const& app)
    {
        return get_self<PlatformApplication>(app.as<IApplication>());
    }

    int const before = Alive::Count();
    TestPlatform platform;
};

} // namespace

TEST_F(Composition, TheWholeIsOneObject)
{
    auto const app = make<App>();
    static_assert(std::is_same_v<decltype(app), Application const>);
    auto const own = app.as<IApplicationOverrides>();
    auto const inners = app.as<IApplication>();
    EXPECT_EQ(get_abi(own.as<Windows::Foundation::IUnknown>()), get_abi(inners.as<Windows::Foundation::IUnknown>()));
    EXPECT_EQ(get_abi(inners.as<IApplicationOverrides>()), get_abi(own));
    EXPECT_TRUE(inners.try_as<Markup::IComponentConnector>());
    EXPECT_FALSE(inners.try_as<IClosable>());
}

TEST_F(Composition, TheOuterNameAndInterfacesAreTold)
{
    auto const app = make<App>();
    EXPECT_EQ(get_class_name(app.as<IApplication>()), L"Tests.App");
    uint32_t count = 0;
    guid* ids = nullptr;
    auto* const inner = static_cast<impl::inspectable_abi*>(get_abi(app.as<IApplication>()));
    check_hresult(inner->GetIids(&count, &ids));
    com_array<guid> const told(ids, count, take_ownership_from_abi);
    EXPECT_NE(std::find(told.begin(), told.end(), guid_of<Markup::IComponentConnector>()), told.end());
    EXPECT_NE(std::find(told.begin(), told.end(), guid_of<IApplication>()), told.end());
}

TEST_F(Composition, OverriddenMethodsAreTheApps)
{
    auto const app = make<App>();
    app.as<IApplicationOverrides>().OnLaunched(nullptr);
    EXPECT_EQ(get_self<App>(app.as<IApplicationOverrides>())->launches, 1);
    EXPECT_EQ(InnerOf(app)->calls, L"");
}

TEST_F(Composition, OtherMethodsAreThePlatforms)
{
    auto const app = make<App>();
    app.as<IApplicationOverrides>().OnActivated(nullptr);
    app.as<IApplicationOverrides2>().OnBackgroundActivated(nullptr);
    EXPECT_EQ(InnerOf(app)->calls, L"activated background ");
    app.Exit();
    EXPECT_EQ(InnerOf(app)->exits, 1);
    EXPECT_THROW(app.as<IApplicationOverrides>().OnFileActivated(nullptr), hresult_access_denied);
}

TEST_F(Composition, EventsOfThePlatformReachTheApp)
{
    auto const app = make<App>();
    InnerOf(app)->suspending(nullptr, nullptr);
    EXPECT_EQ(get_self<App>(app.as<IApplicationOverrides>())->suspensions, 1);
}

TEST_F(Composition, ReferencesToTheInnerInterfacesKeepTheWhole)
{
    IApplication inner;
    {
        auto const app = make<App>();
        inner = app.as<IApplication>();
    }
    EXPECT_EQ(Alive::Count(), before + 2);
    EXPECT_TRUE(inner.as<IApplicationOverrides>());
    inner = nullptr;
    EXPECT_EQ(Alive::Count(), before);
}

TEST_F(Composition, ReferencesToTheOuterInterfacesKeepTheWhole)
{
    IApplicationOverrides outer;
    {
        auto const app = make<App>();
        outer = app.as<IApplicationOverrides>();
    }
    EXPECT_EQ(Alive::Count(), before + 2);
    outer.OnActivated(nullptr);
    outer = nullptr;
    EXPECT_EQ(Alive::Count(), before);
}

TEST_F(Composition, WeakReferencesLeadToTheWhole)
{
    auto app = make<App>();
    auto const weak = make_weak(app.as<IApplication>());
    EXPECT_EQ(weak.get().as<IApplicationOverrides>(), app);
    app = nullptr;
    EXPECT_FALSE(weak.get());
}

TEST_F(Composition, AHandlerOfAnAppThatIsGoneIsNotCalled)
{
    auto app = make<App>();
    SuspendingEventHandler const handler(get_self<App>(app.as<IApplicationOverrides>())->get_weak(),
                                         &App::OnSuspending);
    app = nullptr;
    EXPECT_EQ(Alive::Count(), before);
    EXPECT_NO_THROW(handler(nullptr, nullptr));
}

TEST_F(Composition, ThePlatformsClassServesOnItsOwn)
{
    {
        Application const plain;
        EXPECT_EQ(get_class_name(plain), L"Windows.UI.Xaml.IApplication");
        plain.as<IApplicationOverrides>().OnLaunched(nullptr);
        EXPECT_EQ(InnerOf(plain)->calls, L"launched ");
        EXPECT_EQ(make_weak(plain).get(), plain);
    }
    EXPECT_EQ(Alive::Count(), before);
}

TEST_F(Composition, ABaseThatCannotBeHadIsRaisedAndLeavesNothing)
{
    platform.Provide(L"Windows.UI.Xaml.Application",
                     []() -> Windows::Foundation::IInspectable { throw hresult_access_denied(); });
    EXPECT_THROW(make<App>(), hresult_access_denied);
    EXPECT_EQ(Alive::Count(), before);
}
