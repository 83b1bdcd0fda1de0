#include "simulator/model/Error.h"
#include "tests/unit/simulator/ServicesFixture.h"

namespace
{

using Texts = std::vector<std::wstring>;

constexpr unsigned day = 24 * 60;

class Tasks : public ServicesFixture
{
  protected:
    void OpenChannel() { Ask(m_app, {L"create-channel"}); }
};

} // namespace

TEST_F(Tasks, AreRegisteredInTheirOrderEachWithItsId)
{
    auto const push = Register(L"Push", L"push");
    auto const timer = Register(L"Timer", L"timer", day);
    EXPECT_EQ(push.size(), 36u);
    EXPECT_NE(push, timer);
    EXPECT_EQ(Ask(m_app, {L"tasks"}), (Texts{L"tasks", push, L"Push", timer, L"Timer"}));
    EXPECT_EQ(Reports(), (Texts{L"task-registered name=Push id=" + push + L" trigger=push",
                                L"task-registered name=Timer id=" + timer + L" trigger=timer minutes=1440 once=no"}));
}

TEST_F(Tasks, MayHaveTheSameName)
{
    auto const first = Register(L"A Task", L"push");
    auto const second = Register(L"A Task", L"push");
    EXPECT_EQ(Ask(m_app, {L"tasks"}), (Texts{L"tasks", first, L"A Task", second, L"A Task"}));
}

TEST_F(Tasks, OutliveTheDevicesRestart)
{
    auto const id = Register(L"It's a \"task\"", L"timer", day, true);
    Restart();
    EXPECT_EQ(Ask(m_app, {L"tasks"}), (Texts{L"tasks", id, L"It's a \"task\""}));
    AdvanceClock(day);
    ASSERT_EQ(m_activations.size(), 1u);
    EXPECT_EQ(m_activations[0].more[1], id);
}

TEST_F(Tasks, AreRegisteredByTheAppAlone)
{
    EXPECT_EQ(Ask(m_caller, {L"register-task", L"A Task", L"push", L"0", L"0"})[1], L"0x80070490");
    Register(L"A Task", L"push");
    EXPECT_EQ(Ask(m_caller, {L"tasks"}), (Texts{L"tasks"}));
}

TEST_F(Tasks, TakeNoTimerUnder15Minutes)
{
    EXPECT_EQ(Ask(m_app, {L"register-task", L"A Task", L"timer", L"14", L"0"})[1], L"0x80070057");
    Register(L"A Task", L"timer", 15);
    EXPECT_EQ(Ask(m_app, {L"tasks"}).size(), 3u);
}

TEST_F(Tasks, AreUnregisteredAndRunNoMore)
{
    auto const id = Register(L"A Task", L"timer", day);
    Reports();
    EXPECT_EQ(Ask(m_app, {L"unregister-task", id, L"1"}), (Texts{L"unregistered", L"0x00000000"}));
    EXPECT_EQ(Ask(m_app, {L"tasks"}), (Texts{L"tasks"}));
    EXPECT_EQ(Reports(), (Texts{L"task-unregistered name='A Task' id=" + id}));
    Restart();
    AdvanceClock(day);
    EXPECT_TRUE(m_activations.empty());
}

TEST_F(Tasks, MayBeUnregisteredTwice)
{
    auto const id = Register(L"A Task", L"push");
    Ask(m_app, {L"unregister-task", id, L"1"});
    Reports();
    EXPECT_EQ(Ask(m_app, {L"unregister-task", id, L"1"}), (Texts{L"unregistered", L"0x00000000"}));
    EXPECT_TRUE(Reports().empty());
}

TEST_F(Tasks, AreCancelledWithTheirRegistrationOnRequest)
{
    auto const id = Register(L"A Task", L"timer", day);
    AdvanceClock(day);
    Return(0);
    Ask(m_app, {L"unregister-task", id, L"1"});
    EXPECT_EQ(m_app->received, (std::vector<sim::Message>{{L"cancel", L"1", L"", L"0"}}));
}

TEST_F(Tasks, AreLeftToFinishWithoutThatRequest)
{
    auto const id = Register(L"A Task", L"timer", day);
    AdvanceClock(day);
    Return(0);
    Ask(m_app, {L"unregister-task", id, L"0"});
    EXPECT_TRUE(m_app->received.empty());
    Complete(0);
    EXPECT_EQ(Reports().back(), L"task-completed instance=1 name='A Task'");
}

TEST_F(Tasks, RunWhenTheirTimeHasComeAndAgain)
{
    auto const id = Register(L"Daily", L"timer", day);
    AdvanceClock(day - 1);
    EXPECT_TRUE(m_activations.empty());
    AdvanceClock(1);
    ASSERT_EQ(m_activations.size(), 1u);
    EXPECT_EQ(m_activations[0].kind, sim::ActivationKind::BackgroundTask);
    EXPECT_EQ(m_activations[0].more, (Texts{L"1", id, L"Daily", L"timer", L""}));
    AdvanceClock(day - 1);
    EXPECT_EQ(m_activations.size(), 1u);
    AdvanceClock(1);
    EXPECT_EQ(m_activations.size(), 2u);
}

TEST_F(Tasks, RunOnceForAJumpOfSeveralPeriods)
{
    Register(L"Daily", L"timer", day);
    AdvanceClock(3 * day + 60);
    EXPECT_EQ(m_activations.size(), 1u);
    AdvanceClock(day - 61);
    EXPECT_EQ(m_activations.size(), 1u);
    AdvanceClock(1);
    EXPECT_EQ(m_activations.size(), 2u);
}

TEST_F(Tasks, OfASingleRunGoAfterIt)
{
    Register(L"Once", L"timer", 15, true);
    AdvanceClock(15);
    EXPECT_EQ(m_activations.size(), 1u);
    EXPECT_EQ(Ask(m_app, {L"tasks"}), (Texts{L"tasks"}));
}

TEST_F(Tasks, AreStillDueAfterTheDevicesRestart)
{
    Register(L"Daily", L"timer", day);
    AdvanceClock(day - 1);
    Restart();
    AdvanceClock(1);
    EXPECT_EQ(m_activations.size(), 1u);
}

TEST_F(Tasks, AreWokenByAPushWithItsPayload)
{
    auto const id = Register(L"Push", L"push");
    OpenChannel();
    Reports();
    EXPECT_EQ(Push(L"a payload"), L"sent");
    ASSERT_EQ(m_activations.size(), 1u);
    EXPECT_EQ(m_activations[0].more, (Texts{L"1", id, L"Push", L"push", L"a payload"}));
    EXPECT_EQ(Reports(), (Texts{L"push-sent", L"task-started instance=1 name=Push"}));
}

TEST_F(Tasks, AreWokenByOnePushAfterTheOther)
{
    Register(L"Push", L"push");
    OpenChannel();
    Push(L"one");
    Push(L"two");
    ASSERT_EQ(m_activations.size(), 1u);
    Return(0);
    Complete(0);
    ASSERT_EQ(m_activations.size(), 2u);
    EXPECT_EQ(m_activations[1].more.back(), L"two");
}

TEST_F(Tasks, AreWokenByTheNextPushWhenTheAppDiesOfOne)
{
    Register(L"Push", L"push");
    OpenChannel();
    Push(L"one");
    Push(L"two");
    Return(0);
    Reports();
    Gone(*m_app);
    ASSERT_EQ(m_activations.size(), 2u);
    EXPECT_EQ(m_activations[1].more.back(), L"two");
    EXPECT_EQ(Reports(), (Texts{L"task-lost instance=1 name=Push", L"task-started instance=2 name=Push"}));
}

TEST_F(Tasks, LoseTheirPushesWhenTheAppDoesNotStart)
{
    Register(L"Push", L"push");
    OpenChannel();
    m_appStarts = false;
    Push();
    m_appStarts = true;
    Push();
    EXPECT_EQ(m_activations.size(), 2u);
}

TEST_F(Tasks, BothRunForAPushWhenTwoAreRegistered)
{
    Register(L"Push", L"push");
    Register(L"Push", L"push");
    OpenChannel();
    Push();
    Return(0);
    Complete(0);
    Return(1);
    Complete(1);
    EXPECT_EQ(m_activations.size(), 2u);
}

TEST_F(Tasks, DoNotGetWaitingPushesOnceUnregistered)
{
    auto const id = Register(L"Push", L"push");
    OpenChannel();
    Push();
    Push();
    Return(0);
    Ask(m_app, {L"unregister-task", id, L"0"});
    Complete(0);
    EXPECT_EQ(m_activations.size(), 1u);
}

TEST_F(Tasks, DoNotGetPushesWithoutAChannel)
{
    Register(L"Push", L"push");
    Reports();
    EXPECT_EQ(Push(), L"lost: the app has no open channel");
    EXPECT_EQ(Reports(), (Texts{L"push-lost reason=no-channel"}));
    EXPECT_TRUE(m_activations.empty());
}

TEST_F(Tasks, AreNeededForAPush)
{
    OpenChannel();
    Register(L"Timer", L"timer", day);
    Reports();
    EXPECT_EQ(Push(), L"lost: the app has no task that a push triggers");
    EXPECT_EQ(Reports(), (Texts{L"push-sent", L"push-lost reason=no-task"}));
}

TEST_F(Tasks, GetNoPayloadOf5KilobytesOrMore)
{
    Register(L"Push", L"push");
    OpenChannel();
    EXPECT_THROW(Push(std::wstring(2'560, L'é')), sim::Error); // two bytes each
    EXPECT_TRUE(m_activations.empty());
    EXPECT_EQ(Push(std::wstring(5'119, L'x')), L"sent");
}

TEST_F(Tasks, GoWithThePackage)
{
    Register(L"Push", L"push");
    OpenChannel();
    Do([](sim::Services& services) { services.PackageRemoved(); });
    Restart();
    EXPECT_EQ(Ask(m_app, {L"tasks"}), (Texts{L"tasks"}));
    EXPECT_EQ(Push(), L"lost: the app has no open channel");
}

TEST_F(Tasks, AreNotRegisteredWhenTheDiskDoesNotKeepThem)
{
    ASSERT_TRUE(CreateDirectoryW((m_device.TasksFile() + L".new").c_str(), nullptr)); // nothing can be written there
    EXPECT_EQ(Ask(m_app, {L"register-task", L"A Task", L"push", L"0", L"0"})[0], L"error");
    EXPECT_EQ(Ask(m_app, {L"tasks"}), (Texts{L"tasks"}));
}

TEST_F(Tasks, AreListedForPeople)
{
    auto const id = Register(L"Push", L"push");
    OpenChannel();
    Push();
    auto const text = Do([](sim::Services& services) { return services.Tasks(); });
    EXPECT_EQ(text, L"registered:\n  Push, by a push, " + id + L"\nrunning:\n  1 Push, waits for the app");
}
