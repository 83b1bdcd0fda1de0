#include "tests/unit/simulator/ServicesFixture.h"

#include "simulator/protocol/CancellationReason.h"

namespace
{

using sim::Condition;

// The user logs off, or the device sleeps.
class StoppedAppTest : public ServicesFixture
{
  protected:
    StoppedAppTest()
    {
        RegisterPush(L"Push");
        RegisterTimer(L"Daily", day);
        Ask(m_app, sim::CreateChannel{});
        Reports();
    }

    void Set(Condition condition, bool holds) { Ask(sim::SetCondition{condition, holds}); }

    // A push's task that runs, in an app that nobody has launched.
    void RunTask()
    {
        StartInBackground();
        Push();
        Return(0);
        m_app->received.clear();
        Reports();
    }

    // Nothing reaches the app, but the timer that has become due waits.
    void ExpectStopped(std::wstring const& text, std::wstring const& reason)
    {
        auto const before = m_activations.size();
        Reports();
        EXPECT_EQ(Push(), L"lost: " + text);
        EXPECT_EQ(Reports(), Texts{L"push-lost reason=" + reason});
        AdvanceClock(day);
        EXPECT_EQ(Ask(m_caller, OpenService()).status, sim::OpenStatus::AppUnavailable);
        EXPECT_EQ(RefusalOf(sim::LaunchApp{}), text);
        EXPECT_EQ(RefusalOf(sim::OpenUri{L"a-protocol:x"}), text);
        EXPECT_EQ(RefusalOf(sim::RequestPage{L"A.Page"}), text);
        EXPECT_EQ(m_activations.size(), before);
        EXPECT_EQ(m_processes->started.size(), 1u);
        Reports();
    }

    std::vector<unsigned long> const& Ended() const { return m_processes->killed; }
};

} // namespace

TEST_F(StoppedAppTest, IsEndedByALogoffWhenItsCancelledTasksAreCompleted)
{
    RunTask();
    Set(Condition::LoggedOff, true);
    EXPECT_EQ(Reports(), (Texts{L"condition session=logged-off",
                                L"task-cancelled instance=1 name=Push wake=1 reason=LoggingOff"}));
    EXPECT_EQ(m_app->received, Sent(sim::TaskCancelled{1, 0, sim::CancellationReason::loggingOff}));
    EXPECT_TRUE(Ended().empty());
    Complete(0);
    EXPECT_EQ(Ended(), std::vector<unsigned long>{7});
    KillApp();
    EXPECT_EQ(Reports(), (Texts{L"task-completed instance=1 name=Push wake=1", L"app-terminated pid=7 code=1"}));
    ExpectStopped(L"nobody is logged on", L"logged-off");
    Set(Condition::LoggedOff, false);
    auto const reports = Reports();
    ASSERT_EQ(reports.size(), 3u);
    EXPECT_EQ(Texts(reports.begin(), reports.begin() + 2),
              (Texts{L"condition session=logged-on", L"task-started instance=2 name=Daily wake=2"}));
    ConnectNextApp();
    EXPECT_EQ(TaskAt(1).task, L"Daily");
}

TEST_F(StoppedAppTest, IsEndedByALogoffAtOnceWithoutTasks)
{
    Set(Condition::LoggedOff, true);
    EXPECT_EQ(Ended(), std::vector<unsigned long>{100});
    Set(Condition::LoggedOff, false);
    Launch(L"late");
    EXPECT_TRUE(m_activations.empty()); // it is for the next process
    KillApp();
    ConnectNextApp();
    EXPECT_EQ(m_activations.size(), 1u);
}

TEST_F(StoppedAppTest, IsEndedByALogoffNoLaterThanACancelledTaskMayTake)
{
    Open(m_caller);
    Set(Condition::LoggedOff, true);
    Pass(sim::Limits().afterCancel - 1);
    EXPECT_TRUE(Ended().empty());
    Pass(1);
    EXPECT_EQ(Ended().size(), 1u);
}

TEST_F(StoppedAppTest, IsLoggedOffWithItsDesktopComponents)
{
    EXPECT_EQ(Ask(m_app, sim::LaunchDesktop{L"", std::nullopt}).result, 0);
    Set(Condition::LoggedOff, true);
    EXPECT_EQ(Ended(), (std::vector<unsigned long>{100, 101}));
}

TEST_F(StoppedAppTest, IsThereAgainAfterTheDevicesSleep)
{
    RunTask();
    Set(Condition::Asleep, true);
    EXPECT_EQ(Reports(),
              (Texts{L"condition power=asleep", L"task-cancelled instance=1 name=Push wake=1 reason=SystemPolicy"}));
    EXPECT_EQ(m_app->received, Sent(sim::TaskCancelled{1, 0, sim::CancellationReason::systemPolicy}));
    EXPECT_TRUE(m_processes->suspended.empty());
    Complete(0);
    EXPECT_EQ(Reports(), (Texts{L"task-completed instance=1 name=Push wake=1", L"app-suspended"}));
    ExpectStopped(L"the device is asleep", L"asleep");
    Pass(sim::Limits().idle);
    EXPECT_TRUE(Ended().empty());
    EXPECT_EQ(m_processes->suspended, std::vector<unsigned long>{7});
    EXPECT_TRUE(m_processes->resumed.empty());
    Set(Condition::Asleep, false);
    EXPECT_EQ(Reports(),
              (Texts{L"condition power=awake", L"task-started instance=2 name=Daily wake=2", L"app-resumed wake=2"}));
    EXPECT_EQ(m_processes->resumed, std::vector<unsigned long>{7});
    ASSERT_EQ(m_activations.size(), 2u);
    EXPECT_EQ(TaskAt(1).task, L"Daily");
}

TEST_F(StoppedAppTest, GoesOnAfterTheDevicesSleepIfTheUserHadLaunchedIt)
{
    Set(Condition::Asleep, true);
    EXPECT_EQ(Reports(), (Texts{L"condition power=asleep", L"app-suspended"}));
    Set(Condition::Asleep, false);
    EXPECT_EQ(Reports(), (Texts{L"condition power=awake", L"app-resumed"}));
}

TEST_F(StoppedAppTest, GoesOnWithItsStartAfterTheDevicesSleep)
{
    StartInBackground();
    KillApp();
    Push();
    Set(Condition::Asleep, true);
    EXPECT_EQ(m_processes->suspended, std::vector<unsigned long>{101});
    Set(Condition::Asleep, false);
    EXPECT_EQ(m_processes->resumed, std::vector<unsigned long>{101});
    EXPECT_EQ(LastEvent().Text(), L"app-resumed wake=1");
}

TEST_F(StoppedAppTest, GoesOnWithItsExitAfterTheDevicesSleep)
{
    StartInBackground();
    Say(m_app, sim::ExitAnnounced{});
    Set(Condition::Asleep, true);
    Set(Condition::Asleep, false);
    EXPECT_EQ(m_processes->suspended, std::vector<unsigned long>{7});
    EXPECT_EQ(m_processes->resumed, std::vector<unsigned long>{7});
}

TEST_F(StoppedAppTest, StaysSuspendedAfterTheDevicesSleepInTheBackground)
{
    StartInBackground();
    Set(Condition::Asleep, true);
    Set(Condition::Asleep, false);
    EXPECT_EQ(Reports(), (Texts{L"condition power=asleep", L"app-suspended", L"condition power=awake"}));
    EXPECT_TRUE(m_processes->resumed.empty());
    Pass(60'000);
    EXPECT_TRUE(Ended().empty());
}

TEST_F(StoppedAppTest, IsEndedDuringTheSleepIfItWasSuspendedBefore)
{
    RunTask();
    Complete(0);
    Pass(sim::Limits().idle);
    Take(1);
    Say(m_app, sim::SuspendingCompleted{});
    Set(Condition::Asleep, true);
    Pass(sim::Limits().suspended - 1);
    EXPECT_TRUE(Ended().empty());
    Pass(1);
    EXPECT_EQ(Ended(), std::vector<unsigned long>{7});
    EXPECT_EQ(m_processes->suspended, std::vector<unsigned long>{7}); // once
}

TEST_F(StoppedAppTest, IsSuspendedForItsIdlenessAfterASleepThatCouldNotSuspendIt)
{
    RunTask();
    m_processes->canSuspend = false;
    Set(Condition::Asleep, true);
    Complete(0);
    m_processes->canSuspend = true;
    Set(Condition::Asleep, false);
    Reports();
    Pass(sim::Limits().idle);
    EXPECT_EQ(m_activations.size(), 2u); // Suspending
    Pass(sim::Limits().suspending);
    EXPECT_EQ(Reports(), Texts{L"app-suspended"});
}

TEST_F(StoppedAppTest, GetsWhatWaitsAlsoWhenTheDeviceWakesBeforeItsTasksHaveEnded)
{
    RunTask();
    Set(Condition::Asleep, true);
    AskLater(m_caller, OpenService());
    Set(Condition::Asleep, false);
    Ask(sim::LaunchApp{});
    EXPECT_EQ(m_activations.size(), 2u);
    Complete(0);
    EXPECT_TRUE(Ended().empty());
}

TEST_F(StoppedAppTest, IsEndedByALogoffThatCameWhileTheDeviceSlept)
{
    Set(Condition::Asleep, true);
    Set(Condition::LoggedOff, true);
    EXPECT_TRUE(Ended().empty());
    Set(Condition::Asleep, false);
    EXPECT_EQ(Ended().size(), 1u);
}

TEST_F(StoppedAppTest, IsUpdatedThoughNobodyIsLoggedOn)
{
    Set(Condition::LoggedOff, true);
    auto const update = AskLater(m_commandLine, sim::UpdatePackage{m_layout});
    EXPECT_FALSE(update.Take());
    AdvanceClock(day);
    KillApp();
    EXPECT_TRUE(update.Take());
    EXPECT_EQ(m_processes->started.size(), 1u);
    Set(Condition::LoggedOff, false);
    EXPECT_EQ(m_processes->started.size(), 2u); // for the timer
}
