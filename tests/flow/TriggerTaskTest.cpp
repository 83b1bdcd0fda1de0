#include "tests/flow/AppFlow.h"
#include "tests/flow/Lines.h"
#include "tests/flow/RegisteredTask.h"
#include "tests/support/Banner.h"

#include <winrt/Windows.Foundation.h>
#include <winrt/Windows.Networking.PushNotifications.h>

namespace
{

using test::banner;
using test::ExpectLines;
using test::Lines;

constexpr wchar_t inside[] = L"Inside OnBackgroundActivated";
constexpr wchar_t deferral[] = L"Deferal to complete background task";
constexpr wchar_t launchDone[] = L"Launch Done !! ";
constexpr wchar_t complete[] = L"Service deferral complete";

// One of the app's two tasks: how it is registered and triggered, and what it does.
struct Task
{
    wchar_t const* name;
    bool isPush;
    wchar_t const* group;
    Lines lines;
};

void PrintTo(Task const& task, std::ostream* stream)
{
    *stream << testing::PrintToString(task.name);
}

class TriggerTaskFlow : public test::AppFlow
{
  protected:
    TriggerTaskFlow()
    {
        host.ExemptThisThread(); // it plays the outside world
    }

    void Register(wchar_t const* name, bool isPush)
    {
        isPush ? test::RegisterPushTask(name) : test::RegisterDailyTask(name);
    }

    void Trigger(bool isPush)
    {
        if (isPush)
        {
            winrt::Windows::Networking::PushNotifications::PushNotificationChannelManager::
                CreatePushNotificationChannelForApplicationAsync()
                    .get();
            host.Push(L"payload");
        }
        else
        {
            host.AdvanceClock(1440);
        }
    }

    // Ends the app by a last activation and compares all its messages, without that activation's. By then the previous
    // override has returned, and each continuation that can run has run.
    void ExpectLinesAtTheEnd(Lines const& expected, std::source_location where = std::source_location::current())
    {
        host.OpenUri(L"velmo-notification:");
        WaitForEnd();
        ExpectLines(Messages(), expected + Lines{L"Inside OnActivated App activated by URI protocol"}, where);
    }
};

class TriggerTask : public TriggerTaskFlow, public testing::WithParamInterface<Task>
{
  protected:
    TriggerTask()
    {
        Register(GetParam().name, GetParam().isPush);
        Start();
        Trigger(GetParam().isPush);
    }

    Lines ExpectedLines() const { return Lines{banner, inside, deferral} + GetParam().lines; }
};

TEST_P(TriggerTask, StartsTheDesktopComponentAndIsCompletedWhenThatHasStarted)
{
    auto const launch = WaitForLaunch();
    EXPECT_EQ(launch.group, GetParam().group);
    ExpectLines(Messages(), ExpectedLines());
    EXPECT_EQ(CountReports(L"task-completed"), 0u);
    launch.Complete();
    ExpectLinesAtTheEnd(ExpectedLines() + Lines({launchDone, complete}));
    EXPECT_EQ(CountReports(L"task-completed"), 1u);
    EXPECT_EQ(host.UnfetchedLaunches(), 0u);
}

TEST_P(TriggerTask, DoesNotEndTheApp)
{
    WaitForLaunch().Complete();
    EXPECT_FALSE(host.HasExited());
}

TEST_P(TriggerTask, IsNeverCompletedWhenTheLaunchFailsLater)
{
    WaitForLaunch().Complete(HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND));
    ExpectLinesAtTheEnd(ExpectedLines());
    EXPECT_EQ(CountReports(L"task-completed"), 0u);
    EXPECT_EQ(host.UnfetchedLaunches(), 0u);
}

TEST_P(TriggerTask, KeepsTheAppAliveUntilTheLaunchHasCompleted)
{
    auto const launch = WaitForLaunch();
    ExpectLinesAtTheEnd(ExpectedLines());
    EXPECT_TRUE(app.get());
    launch.Complete();
    EXPECT_FALSE(app.get());
}

INSTANTIATE_TEST_SUITE_P(Tasks, TriggerTask,
                         testing::Values(Task{L"URITimerBGTask",
                                              false,
                                              L"CURIUpdated",
                                              {L"Timer task bkg thread invocation",
                                               L"Going to launch full trust app for timer background task invocation"}},
                                         Task{L"PushNotificationBGTask",
                                              true,
                                              L"NotificationReceived",
                                              {L"Notification bkg thread invocation",
                                               L"Going to launch full trust app for new notification invocation "}}),
                         [](auto const& task) { return std::string(task.param.isPush ? "Push" : "Timer"); });

// Only its name identifies a task, not its trigger.
class TriggerTaskOfAnotherName : public TriggerTaskFlow, public testing::WithParamInterface<wchar_t const*>
{
};

TEST_P(TriggerTaskOfAnotherName, TakesADeferralAndDoesNothingMore)
{
    Register(GetParam(), true);
    Start();
    Trigger(true);
    host.WaitForReport(L"task-started");
    ExpectLinesAtTheEnd({banner, inside, deferral});
    EXPECT_EQ(host.UnfetchedLaunches(), 0u);
    EXPECT_EQ(CountReports(L"task-completed"), 0u);
}

INSTANTIATE_TEST_SUITE_P(Names, TriggerTaskOfAnotherName,
                         testing::Values(L"uritimerbgtask", L"URITimerBGTask ", L"URITimerBGTas",
                                         L"PUSHNOTIFICATIONBGTASK", L"PushNotificationBGTask2", L"another"));

TEST_F(TriggerTaskFlow, IsToldByItsNameWhateverItsTrigger)
{
    Register(L"URITimerBGTask", true);
    Start();
    Trigger(true);
    EXPECT_EQ(WaitForLaunch().group, L"CURIUpdated");
}

// A failure in the activation itself ends the process.
struct TaskFailure
{
    wchar_t const* fault;
    Lines lines;
};

void PrintTo(TaskFailure const& failure, std::ostream* stream)
{
    *stream << testing::PrintToString(failure.fault);
}

class TriggerTaskFailing : public TriggerTaskFlow, public testing::WithParamInterface<TaskFailure>
{
};

TEST_P(TriggerTaskFailing, EndsTheProcess)
{
    Register(L"PushNotificationBGTask", true);
    host.SetFault(GetParam().fault);
    Start();
    Trigger(true);
    WaitForEnd();
    EXPECT_TRUE(host.Failure().has_value());
    ExpectLines(Messages(), Lines({banner, inside}) + GetParam().lines);
}

Lines const untilLaunch = {deferral, L"Notification bkg thread invocation",
                           L"Going to launch full trust app for new notification invocation "};

INSTANTIATE_TEST_SUITE_P(
    Failures, TriggerTaskFailing,
    testing::Values(
        TaskFailure{L"BackgroundActivatedEventArgs null", {}},
        TaskFailure{L"BackgroundActivatedEventArgs.TaskInstance now 0x80004005", {}},
        TaskFailure{L"BackgroundTaskInstance.TriggerDetails now 0x80004005", {}},
        TaskFailure{L"BackgroundTaskInstance.GetDeferral now 0x80004005", {}},
        TaskFailure{L"BackgroundTaskInstance.Task now 0x80004005", {deferral}},
        TaskFailure{L"BackgroundTaskRegistration.Name now 0x80004005", {deferral}},
        TaskFailure{L"BackgroundTaskRegistration.Name now 0x80004005 1 after 1", {deferral}},
        TaskFailure{L"FullTrustProcessLauncher now 0x80040154", untilLaunch},
        TaskFailure{L"FullTrustProcessLauncher.LaunchFullTrustProcessForCurrentAppAsync now 0x80070490", untilLaunch},
        TaskFailure{L"FullTrustProcessLauncher.LaunchFullTrustProcessForCurrentAppAsync unheard 0x8000000E",
                    untilLaunch},
        TaskFailure{L"FullTrustProcessLauncher.LaunchFullTrustProcessForCurrentAppAsync null", untilLaunch}));

TEST_F(TriggerTaskFlow, StartsTheDesktopComponentAlsoWithoutADeferralToComplete)
{
    Register(L"PushNotificationBGTask", true);
    host.SetFault(L"BackgroundTaskInstance.GetDeferral null");
    Start();
    Trigger(true);
    WaitForLaunch().Complete();
    ExpectLinesAtTheEnd(Lines({banner, inside}) + untilLaunch + Lines{launchDone});
}

} // namespace
