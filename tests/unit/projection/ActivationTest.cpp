#include "tests/unit/projection/TestPlatform.h"
#include "tests/unit/projection/WrappedRuntime.h"

#include <windows.h>
#include <winrt/Windows.ApplicationModel.h>
#include <winrt/Windows.Foundation.h>

#include <gtest/gtest.h>

using namespace test;
using namespace winrt;
using namespace Windows::Foundation;
using Windows::ApplicationModel::FullTrustProcessLauncher;

namespace
{

template <typename D, typename... Markers>
struct LauncherBase : implements<D, Windows::ApplicationModel::IFullTrustProcessLauncherStatics, Markers...>
{
    IAsyncAction LaunchFullTrustProcessForCurrentAppAsync() { return Launch(L"<none>"); }
    IAsyncAction LaunchFullTrustProcessForCurrentAppAsync(hstring const& group) { return Launch(group); }
    IAsyncAction LaunchFullTrustProcessForAppAsync(hstring const&) const { throw hresult_not_implemented(); }
    IAsyncAction LaunchFullTrustProcessForAppAsync(hstring const&, hstring const&) const
    {
        throw hresult_not_implemented();
    }

    IAsyncAction Launch(hstring const& group)
    {
        groups.emplace_back(group);
        return nullptr;
    }

    std::vector<std::wstring> groups;
    Alive alive;
};

struct Launcher : LauncherBase<Launcher>
{
};
struct ApartmentLauncher : LauncherBase<ApartmentLauncher, non_agile>
{
};

constexpr auto launcherClass = L"Windows.ApplicationModel.FullTrustProcessLauncher";

} // namespace

TEST(Activation, StaticMethodsCallTheFactory)
{
    TestPlatform platform;
    auto const launcher = make_self<Launcher>();
    platform.Provide(launcherClass, [&] { return launcher.as<Windows::Foundation::IInspectable>(); });
    EXPECT_FALSE(FullTrustProcessLauncher::LaunchFullTrustProcessForCurrentAppAsync(L"LaunchHOV"));
    EXPECT_FALSE(FullTrustProcessLauncher::LaunchFullTrustProcessForCurrentAppAsync());
    EXPECT_EQ(launcher->groups, (std::vector<std::wstring>{L"LaunchHOV", L"<none>"}));
}

TEST(Activation, AnAgileFactoryIsKept)
{
    auto const before = Alive::Count();
    {
        TestPlatform platform;
        platform.Provide(launcherClass, [] { return make<Launcher>(); });
        FullTrustProcessLauncher::LaunchFullTrustProcessForCurrentAppAsync();
        FullTrustProcessLauncher::LaunchFullTrustProcessForCurrentAppAsync();
        EXPECT_EQ(platform.Activations(launcherClass), 1);
        clear_factory_cache();
        EXPECT_EQ(Alive::Count(), before);
        FullTrustProcessLauncher::LaunchFullTrustProcessForCurrentAppAsync();
        EXPECT_EQ(platform.Activations(launcherClass), 2);
    }
    EXPECT_EQ(Alive::Count(), before);
}

TEST(Activation, AnotherFactoryIsAskedForEachTime)
{
    TestPlatform platform;
    platform.Provide(launcherClass, [] { return make<ApartmentLauncher>(); });
    FullTrustProcessLauncher::LaunchFullTrustProcessForCurrentAppAsync();
    FullTrustProcessLauncher::LaunchFullTrustProcessForCurrentAppAsync();
    EXPECT_EQ(platform.Activations(launcherClass), 2);
}

TEST(Activation, AFactoryThatCannotBeHadIsRaised)
{
    TestPlatform platform;
    EXPECT_THROW(FullTrustProcessLauncher::LaunchFullTrustProcessForCurrentAppAsync(), hresult_class_not_registered);
    platform.Provide(launcherClass, []() -> Windows::Foundation::IInspectable { throw hresult_access_denied(); });
    EXPECT_THROW(FullTrustProcessLauncher::LaunchFullTrustProcessForCurrentAppAsync(), hresult_access_denied);
}

TEST(Activation, AFailureIsNotKept)
{
    TestPlatform platform;
    EXPECT_THROW(FullTrustProcessLauncher::LaunchFullTrustProcessForCurrentAppAsync(), hresult_class_not_registered);
    platform.Provide(launcherClass, [] { return make<Launcher>(); });
    EXPECT_NO_THROW(FullTrustProcessLauncher::LaunchFullTrustProcessForCurrentAppAsync());
}

TEST(Activation, AFactoryWithoutTheInterfaceIsRaised)
{
    TestPlatform platform;
    struct Other : implements<Other, IStringable>
    {
        hstring ToString() const { return L""; }
    };
    platform.Provide(launcherClass, [] { return make<Other>(); });
    EXPECT_THROW(FullTrustProcessLauncher::LaunchFullTrustProcessForCurrentAppAsync(), hresult_no_interface);
}

TEST(Activation, TryingGivesNullInsteadOfAFailure)
{
    TestPlatform platform;
    using IStatics = Windows::ApplicationModel::IFullTrustProcessLauncherStatics;
    EXPECT_FALSE((try_get_activation_factory<FullTrustProcessLauncher, IStatics>()));
    EXPECT_FALSE(try_get_activation_factory<IStatics>(launcherClass));
    platform.Provide(launcherClass, [] { return make<Launcher>(); });
    EXPECT_TRUE((try_get_activation_factory<FullTrustProcessLauncher, IStatics>()));
    EXPECT_TRUE(get_activation_factory<IStatics>(launcherClass));
}

TEST(Activation, WithoutAHookTheSystemIsAsked)
{
    clear_factory_cache();
    std::wstring asked;
    GetActivationFactoryCall const system([&](auto, void* name, guid const&, void**) {
        asked = reinterpret_cast<hstring const&>(name);
        return E_ACCESSDENIED;
    });
    EXPECT_THROW(FullTrustProcessLauncher::LaunchFullTrustProcessForCurrentAppAsync(), hresult_access_denied);
    EXPECT_EQ(asked, launcherClass);
}

TEST(Activation, AThreadWithoutAnApartmentJoinsTheMultiThreadedOne)
{
    clear_factory_cache();
    int calls = 0;
    int joined = 0;
    GetActivationFactoryCall const system(
        [&](auto, void*, guid const&, void**) { return ++calls == 1 ? CO_E_NOTINITIALIZED : REGDB_E_CLASSNOTREG; });
    IncrementMtaUsageCall const join([&](auto, auto) {
        ++joined;
        return S_OK;
    });
    EXPECT_THROW(FullTrustProcessLauncher::LaunchFullTrustProcessForCurrentAppAsync(), hresult_class_not_registered);
    EXPECT_EQ(calls, 2);
    EXPECT_EQ(joined, 1);
}

TEST(Activation, AnIdentifierStringThatCannotBeMadeIsRaised)
{
    TestPlatform platform;
    platform.Provide(launcherClass, [] { return make<Launcher>(); });
    FullTrustProcessLauncher::LaunchFullTrustProcessForCurrentAppAsync();
    CreateStringReferenceCall const fails([](auto, auto, auto, auto, auto) { return E_OUTOFMEMORY; });
    EXPECT_THROW(FullTrustProcessLauncher::LaunchFullTrustProcessForCurrentAppAsync(L"LaunchHOV"), std::bad_alloc);
}

TEST(Activation, ConstructorsCallTheirFactories)
{
    TestPlatform platform;
    EXPECT_THROW(Uri(L"ms-appx:///MainPage.xaml"), hresult_class_not_registered);
    EXPECT_EQ(platform.Activations(L"Windows.Foundation.Uri"), 1);
}
