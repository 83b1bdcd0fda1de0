#include "tests/flow/AppFlow.h"
#include "tests/support/Banner.h"
#include "tests/support/Files.h"
#include "utils/UtilsLog.h"

#include <algorithm>

namespace
{

using test::banner;
using test::ExpectLines;

class StartUp : public test::AppFlow
{
};

TEST_F(StartUp, TheBannerIsTheFirstLineAndIsWrittenOnceThoughSeveralActivationsFollow)
{
    host.Suspend();
    host.OpenUri(L"velmo-notification:");
    RunToEnd();
    auto const messages = Messages();
    EXPECT_EQ(messages.at(0), banner);
    EXPECT_EQ(std::ranges::count(messages, banner), 1);
}

// The utilities' lines are not written: their outlets are for other users of the library.
TEST_F(StartUp, LeavesTheUtilitiesLogUnconnected)
{
    host.OpenUri(L"velmo-notification:");
    RunToEnd();
    EXPECT_EQ(zant::g_utilsLogHook, nullptr);
    EXPECT_EQ(zant::g_utilsLogger, nullptr);
}

TEST_F(StartUp, AFailingBaseMakesStartFailBeforeAnythingIsLogged)
{
    host.SetFault(L"Application.CreateInstance now 0x80070005");
    RunToEnd();
    EXPECT_EQ(startResult, E_ACCESSDENIED);
    EXPECT_FALSE(test::FileExists(LogPath()));
}

TEST_F(StartUp, AMissingApplicationClassMakesStartFail)
{
    host.SetFault(L"Application now 0x80040154");
    RunToEnd();
    EXPECT_EQ(startResult, REGDB_E_CLASSNOTREG);
    EXPECT_FALSE(test::FileExists(LogPath()));
}

TEST_F(StartUp, AFailingSuspendingSubscriptionMakesStartFailAfterTheBanner)
{
    host.SetFault(L"Application.Suspending now 0x8000FFFF");
    RunToEnd();
    EXPECT_EQ(startResult, E_UNEXPECTED);
    ExpectLines(Messages(), {banner});
    EXPECT_FALSE(app.get());
}

TEST_F(StartUp, SuspensionLogsNothingAndTheAppGoesOn)
{
    host.Suspend();
    host.Suspend();
    host.OpenUri(L"velmo-notification:");
    RunToEnd();
    ExpectLines(Messages(), {banner, L"Inside OnActivated App activated by URI protocol"});
    EXPECT_EQ(host.Failure(), std::nullopt);
}

// Counts how often it is asked for what a deferral is taken from.
struct SuspendingArgs : winrt::implements<SuspendingArgs, winrt::Windows::ApplicationModel::ISuspendingEventArgs>
{
    using class_type = winrt::Windows::ApplicationModel::SuspendingEventArgs;

    winrt::Windows::ApplicationModel::SuspendingOperation SuspendingOperation()
    {
        ++questions;
        return nullptr;
    }

    int questions = 0;
};

TEST_F(StartUp, SuspensionTakesNoDeferral)
{
    Start();
    host.Launch();
    auto const launch = WaitForLaunch();
    auto const args = winrt::make_self<SuspendingArgs>();
    app.get()->OnSuspending(nullptr, args.as<winrt::Windows::ApplicationModel::SuspendingEventArgs>());
    EXPECT_EQ(args->questions, 0);
    launch.Complete();
}

TEST_F(StartUp, TheApplicationObjectTellsItsRuntimeClass)
{
    Start();
    host.Launch();
    auto const launch = WaitForLaunch();
    auto const running = app.get();
    ASSERT_TRUE(running);
    EXPECT_EQ(winrt::get_class_name(running.as<winrt::Windows::Foundation::IInspectable>()),
              L"VelmoNotificationClient.App");
    launch.Complete();
}

TEST_F(StartUp, TheSuspendingHandlerDoesNotKeepTheAppAlive)
{
    host.OpenUri(L"velmo-notification:");
    RunToEnd();
    EXPECT_FALSE(app.get());
}

} // namespace
