#include "tests/unit/simulator/ServicesFixture.h"

#include "simulator/protocol/CancellationReason.h"

#include <windows.h>

namespace
{

constexpr auto invalidArgument = static_cast<std::int32_t>(0x80070057);
constexpr std::uint32_t aborted = 0;

class BackgroundTasksTest : public ServicesFixture
{
  protected:
    void OpenChannel() { EXPECT_EQ(Ask(m_app, sim::CreateChannel{}).result, 0); }

    sim::TaskUnregistered Unregister(std::wstring const& id, bool cancel)
    {
        return Ask(m_app, sim::UnregisterTask{id, cancel});
    }

    // Registered as ever; triggered, they wait; then each runs once.
    void ExpectHeldBackBy(sim::Condition condition, std::wstring const& why, std::wstring const& holds,
                          std::wstring const& ends)
    {
        Ask(sim::SetCondition{condition, true});
        Ask(sim::SetCondition{condition, true});
        EXPECT_EQ(Reports(), Texts{L"condition " + holds});
        RegisterPush(L"Push");
        RegisterTimer(L"Daily", day);
        OpenChannel();
        EXPECT_EQ(Push(), L"sent; it waits: " + why);
        AdvanceClock(day);
        AdvanceClock(day);
        EXPECT_TRUE(m_activations.empty());
        EXPECT_NE(Ask(sim::ShowTasks{}).find(L"\nwaiting:\n  wake 1, Push: " + why), std::wstring::npos);
        EXPECT_NE(Ask(sim::ShowStatus{}).find(L"\ncondition "), std::wstring::npos);
        Reports();
        Ask(sim::SetCondition{condition, false});
        EXPECT_EQ(Reports(), (Texts{L"condition " + ends, L"task-started instance=1 name=Push wake=1"}));
        Return(0);
        Complete(0);
        Return(1);
        Complete(1);
        ASSERT_EQ(m_activations.size(), 2u);
        EXPECT_EQ(TaskAt(1).task, L"Daily");
    }

    static sim::TaskList const none;
};

sim::TaskList const BackgroundTasksTest::none;

} // namespace

TEST_F(BackgroundTasksTest, RegistersThemInTheirOrderEachWithItsId)
{
    auto const push = RegisterPush(L"Push");
    auto const timer = RegisterTimer(L"Timer", day);
    EXPECT_EQ(push.size(), 36u);
    EXPECT_NE(push, timer);
    EXPECT_EQ(TasksOf(m_app), (sim::TaskList{{{push, L"Push"}, {timer, L"Timer"}}}));
    EXPECT_EQ(Reports(), (Texts{L"task-registered name=Push id=" + push + L" trigger=push",
                                L"task-registered name=Timer id=" + timer + L" trigger=timer minutes=1440 once=no"}));
}

TEST_F(BackgroundTasksTest, RegistersTwoOfTheSameName)
{
    auto const first = RegisterPush(L"A Task");
    auto const second = RegisterPush(L"A Task");
    EXPECT_EQ(TasksOf(m_app), (sim::TaskList{{{first, L"A Task"}, {second, L"A Task"}}}));
}

TEST_F(BackgroundTasksTest, KeepsThemOverTheDevicesRestart)
{
    auto const id = RegisterTimer(L"It's a \"task\"", day, true);
    Restart();
    EXPECT_EQ(TasksOf(m_app), (sim::TaskList{{{id, L"It's a \"task\""}}}));
    AdvanceClock(day);
    ASSERT_EQ(m_activations.size(), 1u);
    EXPECT_EQ(TaskAt(0).taskId, id);
    EXPECT_EQ(TasksOf(m_app), none);
}

TEST_F(BackgroundTasksTest, RegistersForTheAppAlone)
{
    EXPECT_EQ(Ask(m_caller, sim::RegisterTask{.name = L"A Task"}), sim::TaskRegistered{elementNotFound});
    RegisterPush(L"A Task");
    EXPECT_EQ(TasksOf(m_caller), none);
}

TEST_F(BackgroundTasksTest, AreUnregisteredByTheAppAlone)
{
    auto const id = RegisterPush(L"A Task");
    Reports();
    EXPECT_EQ(Ask(m_caller, sim::UnregisterTask{id, true}), sim::TaskUnregistered{elementNotFound});
    EXPECT_EQ(Reports(), Texts{L"message-refused message=UnregisterTask id=" + id});
    EXPECT_EQ(TasksOf(m_app).tasks.size(), 1u);
}

TEST_F(BackgroundTasksTest, TakesNoTimerUnder15Minutes)
{
    EXPECT_EQ(Ask(m_app, sim::RegisterTask{L"A Task", sim::Trigger::Timer, 14}), sim::TaskRegistered{invalidArgument});
    RegisterTimer(L"A Task", 15);
    EXPECT_EQ(TasksOf(m_app).tasks.size(), 1u);
}

TEST_F(BackgroundTasksTest, RunsNoneThatIsUnregistered)
{
    auto const id = RegisterTimer(L"A Task", day);
    Reports();
    EXPECT_EQ(Unregister(id, true).result, 0);
    EXPECT_EQ(TasksOf(m_app), none);
    EXPECT_EQ(Reports(), (Texts{L"task-unregistered name='A Task' id=" + id}));
    Restart();
    AdvanceClock(day);
    EXPECT_TRUE(m_activations.empty());
}

TEST_F(BackgroundTasksTest, UnregistersTwice)
{
    auto const id = RegisterPush(L"A Task");
    Unregister(id, true);
    Reports();
    EXPECT_EQ(Unregister(id, true).result, 0);
    EXPECT_TRUE(Reports().empty());
}

TEST_F(BackgroundTasksTest, CancelsARunningOneWithItsRegistrationOnRequest)
{
    auto const id = RegisterTimer(L"A Task", day);
    AdvanceClock(day);
    Return(0);
    Unregister(id, true);
    EXPECT_EQ(m_app->received, Sent(sim::TaskCancelled{1, 0, aborted}));
}

TEST_F(BackgroundTasksTest, LeavesARunningOneToFinishWithoutThatRequest)
{
    auto const id = RegisterTimer(L"A Task", day);
    AdvanceClock(day);
    Return(0);
    Unregister(id, false);
    EXPECT_TRUE(m_app->received.empty());
    Complete(0);
    EXPECT_EQ(Reports().back(), L"task-completed instance=1 name='A Task' wake=1");
}

TEST_F(BackgroundTasksTest, RunsATimerWhenItsTimeHasComeAndAgain)
{
    auto const id = RegisterTimer(L"Daily", day);
    AdvanceClock(day - 1);
    EXPECT_TRUE(m_activations.empty());
    AdvanceClock(1);
    ASSERT_EQ(m_activations.size(), 1u);
    EXPECT_EQ(TaskAt(0), (sim::TaskStart{1, id, L"Daily", sim::Trigger::Timer, L"", 1}));
    Return(0);
    Complete(0);
    AdvanceClock(day - 1);
    EXPECT_EQ(m_activations.size(), 1u);
    AdvanceClock(1);
    EXPECT_EQ(m_activations.size(), 2u);
}

TEST_F(BackgroundTasksTest, RunsATimerOnceForAJumpOfSeveralPeriods)
{
    RegisterTimer(L"Daily", day);
    AdvanceClock(3 * day + 60);
    EXPECT_EQ(m_activations.size(), 1u);
    Return(0);
    Complete(0);
    EXPECT_EQ(m_activations.size(), 1u);
    AdvanceClock(day - 61);
    EXPECT_EQ(m_activations.size(), 1u);
    AdvanceClock(1);
    EXPECT_EQ(m_activations.size(), 2u);
}

TEST_F(BackgroundTasksTest, ForgetsATimerOfASingleRunAfterIt)
{
    RegisterTimer(L"Once", 15, true);
    AdvanceClock(15);
    EXPECT_EQ(m_activations.size(), 1u);
    EXPECT_EQ(TasksOf(m_app), none);
}

TEST_F(BackgroundTasksTest, RunsATimerThatIsDueAfterTheDevicesRestart)
{
    RegisterTimer(L"Daily", day);
    AdvanceClock(day - 1);
    Restart();
    AdvanceClock(1);
    EXPECT_EQ(m_activations.size(), 1u);
}

TEST_F(BackgroundTasksTest, WakesATaskByAPushWithItsPayload)
{
    auto const id = RegisterPush(L"Push");
    OpenChannel();
    Reports();
    EXPECT_EQ(Push(L"a payload"), L"sent");
    ASSERT_EQ(m_activations.size(), 1u);
    EXPECT_EQ(TaskAt(0), (sim::TaskStart{1, id, L"Push", sim::Trigger::Push, L"a payload", 1}));
    EXPECT_EQ(Reports(), (Texts{L"push-sent bytes=9 wake=1", L"task-started instance=1 name=Push wake=1"}));
}

TEST_F(BackgroundTasksTest, WakesATaskByOnePushAfterTheOther)
{
    RegisterPush(L"Push");
    OpenChannel();
    Push(L"one");
    Push(L"two");
    ASSERT_EQ(m_activations.size(), 1u);
    Return(0);
    EXPECT_EQ(m_activations.size(), 1u);
    Complete(0);
    ASSERT_EQ(m_activations.size(), 2u);
    EXPECT_EQ(TaskAt(1).payload, L"two");
}

TEST_F(BackgroundTasksTest, RunOneAtATimeWhateverTriggersThem)
{
    RegisterTimer(L"Daily", day);
    RegisterTimer(L"Once", day, true);
    RegisterPush(L"Push");
    OpenChannel();
    AdvanceClock(day);
    EXPECT_EQ(Push(), L"sent; it waits: instance 1 runs");
    ASSERT_EQ(m_activations.size(), 1u);
    for (std::size_t i = 0; i < 3; ++i)
    {
        Return(i);
        Complete(i);
    }
    ASSERT_EQ(m_activations.size(), 3u);
    EXPECT_EQ(TaskAt(0).task, L"Daily");
    EXPECT_EQ(TaskAt(1).task, L"Once");
    EXPECT_EQ(TaskAt(2).task, L"Push");
}

TEST_F(BackgroundTasksTest, CarryTheWakeOfTheirTriggerInAllTheirEvents)
{
    RegisterPush(L"Push");
    OpenChannel();
    ExitApp();
    Reports();
    Push();
    ConnectNextApp();
    Return(0);
    EXPECT_EQ(Ask(m_app, sim::LaunchDesktop{L"", L"Group"}).result, 0);
    m_processes->End(FakeProcesses::IdOf(m_processes->started.size() - 1), 0);
    Run();
    Ask(sim::CancelTasks{aborted});
    Complete(0);
    auto const reports = Reports();
    std::vector<std::wstring> kinds;
    for (auto const& report : reports)
    {
        kinds.push_back(report.substr(0, report.find(L' ')));
        EXPECT_TRUE(report.find(L" wake=1") != report.npos || kinds.back() == L"app-idle")
            << testing::PrintToString(report);
    }
    EXPECT_EQ(kinds, (Texts{L"push-sent", L"task-started", L"app-started", L"activated", L"desktop-started",
                            L"desktop-exited", L"task-cancelled", L"task-completed", L"app-idle"}));
}

TEST_F(BackgroundTasksTest, GiveTheirWakeToNoDesktopComponentThatIsLaunchedAfterThem)
{
    RegisterPush(L"Push");
    OpenChannel();
    Push();
    Return(0);
    Complete(0);
    EXPECT_EQ(Ask(m_app, sim::LaunchDesktop{L"", L"Group"}).result, 0);
    EXPECT_EQ(LastEvent().kind, L"desktop-started");
    EXPECT_EQ(LastEvent().Detail(L"wake"), std::nullopt);
    Push();
    EXPECT_EQ(TaskAt(1).wake, 2u);
}

TEST_F(BackgroundTasksTest, AreHeldBackWhileTheUserDeniesAccess)
{
    ExpectHeldBackBy(sim::Condition::AccessDenied, L"background access is denied", L"access=denied", L"access=allowed");
}

TEST_F(BackgroundTasksTest, AreHeldBackByTheBatterySaver)
{
    ExpectHeldBackBy(sim::Condition::BatterySaver, L"the battery saver is on", L"battery=saver", L"battery=normal");
}

TEST_F(BackgroundTasksTest, AreCancelledByTheBatterySaverButNoAppService)
{
    RegisterPush(L"Push");
    OpenChannel();
    Open(m_caller);
    Push();
    Return(1);
    Push();
    m_app->received.clear();
    Reports();
    Ask(sim::SetCondition{sim::Condition::BatterySaver, true});
    EXPECT_EQ(Reports(),
              (Texts{L"condition battery=saver", L"task-cancelled instance=2 name=Push wake=1 reason=EnergySaver"}));
    EXPECT_EQ(m_app->received, Sent(sim::TaskCancelled{2, 0, sim::CancellationReason::energySaver}));
    Complete(1);
    EXPECT_EQ(m_activations.size(), 2u); // the second push waits
}

TEST_F(BackgroundTasksTest, AreHeldBackUntilNothingHoldsThem)
{
    RegisterPush(L"Push");
    OpenChannel();
    Ask(sim::SetCondition{sim::Condition::AccessDenied, true});
    Ask(sim::SetCondition{sim::Condition::BatterySaver, true});
    Push();
    Ask(sim::SetCondition{sim::Condition::AccessDenied, false});
    EXPECT_TRUE(m_activations.empty());
    Ask(sim::SetCondition{sim::Condition::BatterySaver, false});
    EXPECT_EQ(m_activations.size(), 1u);
}

TEST_F(BackgroundTasksTest, LosesPushesWithoutANetworkButNoTimers)
{
    RegisterPush(L"Push");
    RegisterTimer(L"Daily", day);
    OpenChannel();
    Ask(sim::SetCondition{sim::Condition::NetworkOff, true});
    Reports();
    EXPECT_EQ(Push(), L"lost: the device has no network");
    EXPECT_EQ(Reports(), Texts{L"push-lost reason=no-network"});
    AdvanceClock(day);
    ASSERT_EQ(m_activations.size(), 1u);
    EXPECT_EQ(TaskAt(0).task, L"Daily");
    Return(0);
    Complete(0);
    Ask(sim::SetCondition{sim::Condition::NetworkOff, false});
    EXPECT_EQ(m_activations.size(), 1u);
    EXPECT_EQ(Push(), L"sent");
}

TEST_F(BackgroundTasksTest, WakesATaskByTheNextPushWhenTheAppDiesOfOne)
{
    RegisterPush(L"Push");
    OpenChannel();
    Push(L"one");
    Push(L"two");
    Return(0);
    Reports();
    Close(m_app);
    EXPECT_EQ(Reports(),
              (Texts{L"task-lost instance=1 name=Push wake=1", L"task-started instance=2 name=Push wake=2"}));
    End(0, 3);
    m_activations.clear(); // the dead process may have been sent it, too
    ConnectNextApp();
    ASSERT_EQ(m_activations.size(), 1u);
    EXPECT_EQ(TaskAt(0).payload, L"two");
}

TEST_F(BackgroundTasksTest, LosesPushesWhenTheAppDoesNotStart)
{
    RegisterPush(L"Push");
    OpenChannel();
    ExitApp();
    m_processes->error = ERROR_BAD_EXE_FORMAT;
    Push(L"lost");
    m_processes->error = 0;
    Push(L"next");
    ConnectNextApp();
    ASSERT_EQ(m_activations.size(), 1u);
    EXPECT_EQ(TaskAt(0).payload, L"next");
}

TEST_F(BackgroundTasksTest, RunsBothForAPushWhenTwoAreRegistered)
{
    auto const first = RegisterPush(L"Push");
    auto const second = RegisterPush(L"Push");
    OpenChannel();
    Push();
    Return(0);
    Complete(0);
    Return(1);
    Complete(1);
    ASSERT_EQ(m_activations.size(), 2u);
    EXPECT_EQ(TaskAt(0).taskId, first);
    EXPECT_EQ(TaskAt(1).taskId, second);
}

TEST_F(BackgroundTasksTest, GivesAnUnregisteredTaskNoWaitingPushes)
{
    auto const id = RegisterPush(L"Push");
    OpenChannel();
    Push();
    Push();
    Return(0);
    Unregister(id, false);
    Complete(0);
    EXPECT_EQ(m_activations.size(), 1u);
}

TEST_F(BackgroundTasksTest, GivesNoPushesWithoutAChannel)
{
    RegisterPush(L"Push");
    Reports();
    EXPECT_EQ(Push(), L"lost: the app has no open channel");
    EXPECT_EQ(Reports(), (Texts{L"push-lost reason=no-channel"}));
    EXPECT_TRUE(m_activations.empty());
}

TEST_F(BackgroundTasksTest, NeedsATaskForAPush)
{
    OpenChannel();
    RegisterTimer(L"Timer", day);
    Reports();
    EXPECT_EQ(Push(), L"lost: the app has no task that a push triggers");
    EXPECT_EQ(Reports(), (Texts{L"push-sent bytes=5 wake=1", L"push-lost reason=no-task"}));
}

TEST_F(BackgroundTasksTest, GivesNoPayloadOf5KilobytesOrMore)
{
    RegisterPush(L"Push");
    OpenChannel();
    EXPECT_NE(RefusalOf(sim::Push{std::wstring(2'560, L'é')}), L""); // two bytes each
    EXPECT_TRUE(m_activations.empty());
    EXPECT_EQ(Push(std::wstring(5'119, L'x')), L"sent");
}

TEST_F(BackgroundTasksTest, RemovesThemWithThePackage)
{
    RegisterPush(L"Push");
    OpenChannel();
    ExitApp();
    Ask(sim::UnregisterPackage{});
    Register();
    Restart();
    EXPECT_EQ(TasksOf(m_app), none);
    EXPECT_EQ(Push(), L"lost: the app has no open channel");
}

TEST_F(BackgroundTasksTest, RegistersNoneThatTheDiskDoesNotKeep)
{
    ASSERT_TRUE(
        CreateDirectoryW((m_device.TasksFile(family) + L".new").c_str(), nullptr)); // nothing can be written there
    EXPECT_NE(AskLater(m_app, sim::RegisterTask{.name = L"A Task"}).TakeRefusal(), L"");
    EXPECT_EQ(TasksOf(m_app), none);
}

TEST_F(BackgroundTasksTest, ListsThemForPeople)
{
    auto const id = RegisterPush(L"Push");
    OpenChannel();
    Push();
    EXPECT_EQ(Ask(sim::ShowTasks{}),
              L"registered:\n  Push, by a push, " + id + L"\nrunning:\n  1 Push, waits for the app");
    EXPECT_EQ(Push(), L"sent; it waits: instance 1 runs");
    EXPECT_EQ(Ask(sim::ShowTasks{}), L"registered:\n  Push, by a push, " + id +
                                         L"\nrunning:\n  1 Push, waits for the app"
                                         L"\nwaiting:\n  wake 2, Push: instance 1 runs");
}
