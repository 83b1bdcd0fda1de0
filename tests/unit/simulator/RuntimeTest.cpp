#include "simulator/base/Error.h"
#include "simulator/testing/LocalDevice.h"

#include <gtest/gtest.h>
#include <objidl.h>
#include <thread>
#include <windows.h>
#include <winrt/Windows.ApplicationModel.Activation.h>
#include <winrt/Windows.ApplicationModel.Core.h>
#include <winrt/Windows.ApplicationModel.h>
#include <winrt/Windows.Foundation.h>
#include <winrt/Windows.UI.Xaml.h>

using namespace winrt::Windows::ApplicationModel;
using namespace winrt::Windows::ApplicationModel::Activation;
using namespace winrt::Windows::UI::Xaml;
using winrt::Windows::ApplicationModel::Core::CoreApplication;

namespace
{

// What the app of these tests does and what was seen of it; the tests set it up before they start it.
struct Script
{
    std::function<void(LaunchActivatedEventArgs const&)> onLaunched;
    std::function<void(IActivatedEventArgs const&)> onActivated;
    std::function<void()> onConstructed;
    int appsAlive = 0;
};

Script* g_script = nullptr; // of the running test

struct ScriptedApp : ApplicationT<ScriptedApp>
{
    ScriptedApp()
    {
        g_script->onConstructed();
        ++g_script->appsAlive;
    }

    ~ScriptedApp() { --g_script->appsAlive; }

    void OnLaunched(LaunchActivatedEventArgs const& args) { g_script->onLaunched(args); }

    void OnActivated(IActivatedEventArgs const& args) { g_script->onActivated(args); }
};

APTTYPE CurrentApartment()
{
    APTTYPE type{};
    APTTYPEQUALIFIER qualifier{};
    return CoGetApartmentType(&type, &qualifier) == S_OK ? type : APTTYPE_CURRENT;
}

class RuntimeTest : public testing::Test
{
  protected:
    RuntimeTest()
    {
        g_script = &m_script;
        m_script.onConstructed = [] {};
        m_script.onLaunched = [](auto&&) { CoreApplication::Exit(); };
        m_script.onActivated = [](auto&&) { CoreApplication::Exit(); };
    }

    // Runs the app to its end; the failure of Start, or 0.
    static std::int32_t Start()
    {
        try
        {
            Application::Start([](auto&&) { winrt::make<ScriptedApp>(); });
            return 0;
        }
        catch (winrt::hresult_error const& error)
        {
            return error.code();
        }
    }

    std::int32_t Launch()
    {
        m_host.Launch();
        return Start();
    }

    sim::LocalDevice m_host;
    Script m_script;
};

} // namespace

TEST_F(RuntimeTest, AreConstructedAndActivatedOnTheMainViewsThread)
{
    DWORD constructed = 0;
    DWORD launched = 0;
    m_script.onConstructed = [&] {
        constructed = GetCurrentThreadId();
        EXPECT_EQ(CurrentApartment(), APTTYPE_MAINSTA);
    };
    m_script.onLaunched = [&](auto&&) {
        launched = GetCurrentThreadId();
        CoreApplication::Exit();
    };
    EXPECT_EQ(Launch(), 0);
    EXPECT_EQ(constructed, launched);
    EXPECT_NE(launched, GetCurrentThreadId());
}

TEST_F(RuntimeTest, AreKeptByThePlatformAndReleasedAtTheEnd)
{
    m_script.onLaunched = [&](auto&&) {
        EXPECT_EQ(m_script.appsAlive, 1);
        CoreApplication::Exit();
    };
    EXPECT_EQ(Launch(), 0);
    EXPECT_EQ(m_script.appsAlive, 0);
}

TEST_F(RuntimeTest, GetTheirActivationsInOrder)
{
    std::vector<std::wstring> seen;
    m_script.onLaunched = [&](LaunchActivatedEventArgs const& args) {
        seen.push_back(L"launch " + std::wstring(args.Arguments()));
    };
    m_script.onActivated = [&](IActivatedEventArgs const& args) {
        EXPECT_EQ(args.Kind(), ActivationKind::Protocol);
        EXPECT_TRUE(args.try_as<ProtocolActivatedEventArgs>());
        seen.push_back(L"protocol");
        if (seen.size() == 3)
        {
            CoreApplication::Exit();
        }
    };
    m_host.Launch(L"one");
    m_host.Launch(L"two");
    m_host.OpenUri(L"x:");
    EXPECT_EQ(Start(), 0);
    EXPECT_EQ(seen, (std::vector<std::wstring>{L"launch one", L"launch two", L"protocol"}));
}

TEST_F(RuntimeTest, LearnWhetherTheyRanBefore)
{
    std::vector<ApplicationExecutionState> states;
    m_script.onLaunched = [&](LaunchActivatedEventArgs const& args) {
        auto const activated = args.as<IActivatedEventArgs>();
        EXPECT_EQ(activated.Kind(), ActivationKind::Launch);
        EXPECT_FALSE(args.PrelaunchActivated());
        states.push_back(activated.PreviousExecutionState());
        if (states.size() == 2)
        {
            CoreApplication::Exit();
        }
    };
    m_host.Launch();
    EXPECT_EQ(Launch(), 0);
    EXPECT_EQ(states, (std::vector{ApplicationExecutionState::NotRunning, ApplicationExecutionState::Running}));
}

TEST_F(RuntimeTest, EndAtAnExitFromAnyThreadWithoutSuspending)
{
    bool wasSuspended = false;
    m_script.onLaunched = [&](auto&&) {
        Application::Current().Suspending([&](auto&&...) { wasSuspended = true; });
        std::thread([] { CoreApplication::Exit(); }).join();
    };
    m_host.Launch();
    EXPECT_EQ(Launch(), 0);
    EXPECT_TRUE(m_host.HasExited());
    EXPECT_FALSE(wasSuspended);
}

TEST_F(RuntimeTest, GetNothingMoreAfterTheirExit)
{
    int launches = 0;
    m_script.onLaunched = [&](auto&&) {
        ++launches;
        CoreApplication::Exit();
    };
    m_host.Launch();
    EXPECT_EQ(Launch(), 0);
    EXPECT_EQ(launches, 1);
}

TEST_F(RuntimeTest, ExitThroughTheApplicationToo)
{
    m_script.onLaunched = [](auto&&) { Application::Current().Exit(); };
    EXPECT_EQ(Launch(), 0);
    EXPECT_TRUE(m_host.HasExited());
}

TEST_F(RuntimeTest, ThatDoNotExitAreEndedFromOutside)
{
    m_script.onLaunched = [&](auto&&) { m_host.End(); };
    EXPECT_EQ(Launch(), 0);
    EXPECT_FALSE(m_host.HasExited());
}

TEST_F(RuntimeTest, HearThatTheyAreSuspendedWithADeadline)
{
    int deferrals = 0;
    m_script.onLaunched = [&](auto&&) {
        Application::Current().Suspending([&](auto&&, SuspendingEventArgs const& args) {
            EXPECT_GT(args.SuspendingOperation().Deadline(), winrt::clock::now());
            args.SuspendingOperation().GetDeferral().Complete();
            ++deferrals;
            CoreApplication::Exit();
        });
        m_host.Suspend();
    };
    EXPECT_EQ(Launch(), 0);
    EXPECT_EQ(deferrals, 1);
}

// The second event is raised when the handler of the first one has returned.
TEST_F(RuntimeTest, AreSuspendedWhenAllDeferralsOfSuspendingAreCompleted)
{
    SuspendingDeferral deferral = nullptr;
    m_script.onLaunched = [&](auto&&) {
        Application::Current().Suspending([&](auto&&, SuspendingEventArgs const& args) {
            if (!deferral)
            {
                auto const operation = args.SuspendingOperation();
                deferral = operation.GetDeferral();
                auto const other = operation.GetDeferral();
                other.Complete();
                other.Complete();
                return;
            }
            EXPECT_EQ(std::ranges::count(m_host.Reports(), L"app-suspended", &sim::Event::kind), 0);
            deferral.Complete();
            m_host.WaitForReport(L"app-suspended");
            CoreApplication::Exit();
        });
        m_host.Suspend();
        m_host.Suspend();
    };
    EXPECT_EQ(Launch(), 0);
}

TEST_F(RuntimeTest, AreSuspendedWhenAHandlerOfSuspendingHasReturnedThatTakesNoDeferral)
{
    m_script.onLaunched = [&](auto&&) {
        Application::Current().Suspending([](auto&&...) {});
        m_host.Suspend();
    };
    std::thread end([&] {
        m_host.WaitForReport(L"app-suspended");
        m_host.End();
    });
    EXPECT_EQ(Launch(), 0);
    end.join();
}

TEST_F(RuntimeTest, HaveAWindowOnceInTheForeground)
{
    m_script.onConstructed = [] { EXPECT_FALSE(Window::Current()); };
    m_script.onLaunched = [](auto&&) {
        auto const window = Window::Current();
        EXPECT_TRUE(window && !window.Content());
        std::thread([] { EXPECT_FALSE(Window::Current()); }).join();
        CoreApplication::Exit();
    };
    EXPECT_EQ(Launch(), 0);
    EXPECT_FALSE(Window::Current());
}

TEST_F(RuntimeTest, FailWithTheirConstructor)
{
    m_script.onConstructed = [] { throw winrt::hresult_access_denied(); };
    EXPECT_EQ(Launch(), E_ACCESSDENIED);
    auto const reports = m_host.Reports();
    ASSERT_EQ(reports.size(), 1u);
    EXPECT_EQ(reports[0].Text(), L"start-failed result=0x80070005");
}

TEST_F(RuntimeTest, CanStartAfterOneThatFailed)
{
    m_host.SetFault(L"Application.CreateInstance now 0x80004005 1");
    EXPECT_EQ(Launch(), E_FAIL);
    EXPECT_EQ(Start(), 0);
}

TEST_F(RuntimeTest, FailWithACallbackThatConstructsNothing)
{
    try
    {
        Application::Start([](auto&&) {});
        FAIL();
    }
    catch (winrt::hresult_error const& error)
    {
        EXPECT_EQ(error.code(), E_UNEXPECTED);
    }
}

TEST_F(RuntimeTest, EndWithTheFailureOfAnOverride)
{
    bool wasRaised = false;
    m_script.onLaunched = [&](auto&&) {
        Application::Current().UnhandledException([&](auto&&...) { wasRaised = true; });
        throw winrt::hresult_error(E_FAIL);
    };
    EXPECT_EQ(Launch(), 0);
    EXPECT_EQ(m_host.Failure(), E_FAIL);
    EXPECT_TRUE(wasRaised);
    EXPECT_EQ(m_host.WaitForReport(L"unhandled-exception").Text(), L"unhandled-exception result=0x80004005");
}

TEST_F(RuntimeTest, FailWithTheirBase)
{
    m_host.SetFault(L"Application.CreateInstance now 0x80004005");
    EXPECT_EQ(Launch(), E_FAIL);
}

TEST_F(RuntimeTest, FailWithTheirBasesClass)
{
    m_host.SetFault(L"Application now 0x80040154");
    EXPECT_EQ(Launch(), REGDB_E_CLASSNOTREG);
}

TEST_F(RuntimeTest, FailWithStart)
{
    m_host.SetFault(L"Application.Start now 0x80004005");
    EXPECT_EQ(Launch(), E_FAIL);
}

TEST_F(RuntimeTest, FailWithTheSubscriptionToSuspending)
{
    m_host.SetFault(L"Application.Suspending now 0x80004005");
    // Composed already when it fails: the platform must not touch the half-made object any more.
    m_script.onConstructed = [] { Application::Current().Suspending([](auto&&...) {}); };
    EXPECT_EQ(Launch(), E_FAIL);
    EXPECT_FALSE(Application::Current());
}

TEST_F(RuntimeTest, EndWhenExitFails)
{
    m_host.SetFault(L"CoreApplication.Exit now 0x80004005");
    EXPECT_EQ(Launch(), 0);
    EXPECT_EQ(m_host.Failure(), E_FAIL);
}

TEST_F(RuntimeTest, EndWhenTheClassOfExitIsMissing)
{
    m_host.SetFault(L"CoreApplication now 0x80040154");
    EXPECT_EQ(Launch(), 0);
    EXPECT_EQ(m_host.Failure(), REGDB_E_CLASSNOTREG);
}

TEST_F(RuntimeTest, EndWhenTheKindOfAnActivationFails)
{
    m_host.SetFault(L"ProtocolActivatedEventArgs.Kind now 0x80004005");
    m_host.SetFault(L"LaunchActivatedEventArgs.Kind now 0x80004005");
    m_script.onActivated = [](IActivatedEventArgs const& args) { static_cast<void>(args.Kind()); };
    m_host.OpenUri(L"x:");
    EXPECT_EQ(Start(), 0);
    EXPECT_EQ(m_host.Failure(), E_FAIL);
}

TEST_F(RuntimeTest, AreActivatedWithoutArgumentsOnRequest)
{
    m_host.SetFault(L"LaunchActivatedEventArgs null");
    m_host.SetFault(L"ProtocolActivatedEventArgs null");
    m_script.onLaunched = [](LaunchActivatedEventArgs const& args) { EXPECT_FALSE(args); };
    m_script.onActivated = [](IActivatedEventArgs const& args) {
        EXPECT_FALSE(args);
        CoreApplication::Exit();
    };
    m_host.Launch();
    m_host.OpenUri(L"x:");
    EXPECT_EQ(Start(), 0);
}

TEST_F(RuntimeTest, GetAFailingOrNoWindowOnRequest)
{
    m_host.SetFault(L"Window.Current null 1");
    m_host.SetFault(L"Window.Content now 0x80004005");
    m_script.onLaunched = [](auto&&) {
        EXPECT_FALSE(Window::Current());
        EXPECT_THROW(Window::Current().Content(), winrt::hresult_error);
        CoreApplication::Exit();
    };
    EXPECT_EQ(Launch(), 0);
}

TEST_F(RuntimeTest, GoAsTheirWatchSays)
{
    std::vector<std::wstring> calls;
    m_host.WatchCalls([&](std::wstring_view call) {
        calls.emplace_back(call);
        sim::Fault const fault{.call = L"Window.Current", .value = 0x80004005};
        return call == fault.call ? std::optional(fault) : std::nullopt;
    });
    m_script.onLaunched = [&](auto&&) {
        calls.clear();
        EXPECT_THROW(Window::Current(), winrt::hresult_error);
        m_host.WatchCalls({});
        EXPECT_TRUE(Window::Current());
        CoreApplication::Exit();
    };
    EXPECT_EQ(Launch(), 0);
    EXPECT_EQ(calls, (std::vector<std::wstring>{L"Window", L"Window.Current"}));
}

TEST_F(RuntimeTest, DoNotGetAnUnservedMember)
{
    m_script.onLaunched = [](auto&&) {
        EXPECT_THROW(Application::Current().RequestedTheme(), winrt::hresult_not_implemented);
        EXPECT_THROW(Window::Current().Activate(), winrt::hresult_not_implemented);
        EXPECT_THROW(CoreApplication::Suspending(nullptr), winrt::hresult_not_implemented);
        EXPECT_THROW(winrt::get_activation_factory<CoreApplication>()
                         .ActivateInstance<winrt::Windows::Foundation::IInspectable>(),
                     winrt::hresult_not_implemented);
        CoreApplication::Exit();
    };
    EXPECT_EQ(Launch(), 0);
}

TEST_F(RuntimeTest, UseOnlyKnownFaults)
{
    EXPECT_THROW(m_host.SetFault(L"Application.Strat now 0x80004005"), sim::Error);
}
