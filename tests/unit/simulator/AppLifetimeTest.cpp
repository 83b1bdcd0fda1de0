#include "tests/unit/simulator/ServicesFixture.h"

namespace
{

constexpr sim::Limits limits;

// What becomes of an app that nobody needs.
class AppLifetimeTest : public ServicesFixture
{
  protected:
    AppLifetimeTest()
    {
        RegisterPush(L"A Task");
        Ask(m_app, sim::CreateChannel{});
        StartInBackground();
    }

    // A push's task that runs and is completed.
    void RunTask()
    {
        Push();
        Return(m_activations.size() - 1);
        Complete(m_activations.size() - 1);
    }

    // The app has dealt with Suspending, the last that it was given.
    void CompleteSuspending()
    {
        Take(m_activations.size() - 1);
        Say(m_app, sim::SuspendingCompleted{});
    }

    // An app that ran a task and was suspended for its idleness.
    void Idle()
    {
        RunTask();
        Pass(limits.idle);
        CompleteSuspending();
        EXPECT_EQ(Suspensions(), 1u);
        Reports();
    }

    std::size_t Suspensions() const { return m_processes->suspended.size(); }
    std::size_t Resumptions() const { return m_processes->resumed.size(); }
    std::size_t Endings() const { return m_processes->killed.size(); }
};

} // namespace

TEST_F(AppLifetimeTest, SuspendsAnAppWithNothingLeftToDoThenEndsIt)
{
    RunTask();
    EXPECT_EQ(Reports().back(), L"app-idle");
    Pass(limits.idle - 1);
    EXPECT_EQ(m_activations.size(), 1u);
    Pass(1);
    ASSERT_EQ(m_activations.size(), 2u);
    EXPECT_EQ(Reports(), Texts{});
    CompleteSuspending();
    EXPECT_EQ(Reports(), (Texts{L"suspending", L"app-suspended"}));
    EXPECT_EQ(m_processes->suspended, std::vector<unsigned long>{7});
    Pass(limits.suspended - 1);
    EXPECT_EQ(Endings(), 0u);
    Pass(1);
    EXPECT_EQ(m_processes->killed, std::vector<unsigned long>{7});
    EXPECT_EQ(Resumptions(), 0u);
    KillApp();
    EXPECT_EQ(Reports(), Texts{L"app-terminated pid=7 code=1"});
}

TEST_F(AppLifetimeTest, SuspendsAtTheDeadlineWhatDoesNotCompleteSuspending)
{
    RunTask();
    Pass(limits.idle);
    Take(1);
    Pass(limits.suspending - 1);
    EXPECT_EQ(Suspensions(), 0u);
    Pass(1);
    EXPECT_EQ(Suspensions(), 1u);
    Say(m_app, sim::SuspendingCompleted{}); // it was on its way
    EXPECT_EQ(Suspensions(), 1u);
}

TEST_F(AppLifetimeTest, SuspendsAtTheDeadlineAnIdleAppThatDoesNotTakeSuspending)
{
    RunTask();
    Pass(limits.idle);
    Pass(limits.suspending);
    EXPECT_EQ(Suspensions(), 1u);
}

TEST_F(AppLifetimeTest, ResumesTheAppForTheNextActivation)
{
    Idle();
    EXPECT_NE(Ask(sim::ShowStatus{}).find(L"process 7, suspended"), std::wstring::npos);
    Push();
    EXPECT_EQ(Reports(), (Texts{L"push-sent bytes=5 wake=2", L"task-started instance=2 name='A Task' wake=2",
                                L"app-resumed wake=2"}));
    EXPECT_EQ(m_processes->resumed, std::vector<unsigned long>{7});
    EXPECT_EQ(TaskAt(2).wake, 2u);
    EXPECT_EQ(m_processes->started.size(), 1u);
    Pass(limits.suspended);
    EXPECT_EQ(Endings(), 0u);
    Return(2);
    Complete(2);
    Pass(limits.idle);
    CompleteSuspending();
    EXPECT_EQ(Suspensions(), 2u);
}

TEST_F(AppLifetimeTest, ResumesTheAppForTheUser)
{
    Idle();
    Launch();
    EXPECT_EQ(Reports(), Texts{L"app-resumed"});
    Pass(limits.suspended);
    EXPECT_EQ(Endings(), 0u);
}

TEST_F(AppLifetimeTest, LeavesAnAppOfTheForegroundAlone)
{
    Launch();
    Take(0);
    RunTask();
    EXPECT_EQ(Reports().back(), L"task-completed instance=1 name='A Task' wake=1");
    Pass(limits.idle);
    EXPECT_EQ(m_activations.size(), 2u);
}

TEST_F(AppLifetimeTest, LeavesAnAppAloneThatHasMoreToDo)
{
    Push();
    Open(m_caller);
    Return(0);
    Complete(0);
    EXPECT_EQ(Reports().back(), L"task-completed instance=1 name='A Task' wake=1");
    Pass(limits.idle);
    EXPECT_EQ(m_activations.size(), 2u);
    Complete(1);
    EXPECT_EQ(Reports().back(), L"app-idle");
}

TEST_F(AppLifetimeTest, LeavesAnIdleAppAloneThatGotSomethingToDo)
{
    RunTask();
    AskLater(m_caller, OpenService());
    Take(1);
    Pass(limits.idle);
    EXPECT_EQ(m_activations.size(), 2u);
}

TEST_F(AppLifetimeTest, LeavesAnAppAloneThatGetsSomethingToDoAtSuspending)
{
    RunTask();
    Pass(limits.idle);
    Push();
    Take(1);
    Say(m_app, sim::SuspendingCompleted{});
    Pass(limits.suspending);
    EXPECT_EQ(Suspensions(), 0u);
    Return(2);
    Complete(2);
    Pass(limits.idle);
    CompleteSuspending();
    EXPECT_EQ(Suspensions(), 1u);
}

TEST_F(AppLifetimeTest, WaitsAgainWhenTheAppIsIdleAgain)
{
    RunTask();
    Pass(limits.idle - 1);
    RunTask();
    Pass(limits.idle - 1);
    EXPECT_EQ(m_activations.size(), 2u);
    Pass(1);
    EXPECT_EQ(m_activations.size(), 3u);
}

TEST_F(AppLifetimeTest, SuspendsAnAppOnRequestAndDoesNotEndIt)
{
    Launch();
    Take(0);
    Ask(sim::SuspendApp{});
    CompleteSuspending();
    EXPECT_EQ(Suspensions(), 1u);
    EXPECT_EQ(RefusalOf(sim::SuspendApp{}), L"the app is suspended already");
    Pass(limits.suspended);
    EXPECT_EQ(Endings(), 0u);
}

TEST_F(AppLifetimeTest, RaisesSuspendingOnceWhenAnIdleAppIsSuspendedOnRequest)
{
    RunTask();
    Ask(sim::SuspendApp{});
    Pass(limits.idle);
    EXPECT_EQ(m_activations.size(), 2u); // the task's, then Suspending
    CompleteSuspending();
    Pass(limits.suspended);
    EXPECT_EQ(Suspensions(), 1u);
    EXPECT_EQ(Endings(), 0u);
}

TEST_F(AppLifetimeTest, DoesNotSuspendAnAppOnRequestThatIsNeeded)
{
    Open(m_caller);
    Ask(sim::SuspendApp{});
    CompleteSuspending();
    EXPECT_EQ(Suspensions(), 0u);
    EXPECT_EQ(Reports().back(), L"suspending");
}

TEST_F(AppLifetimeTest, DoesNotSuspendAnAppThatExits)
{
    Ask(sim::SuspendApp{});
    Take(0);
    Say(m_app, sim::ExitAnnounced{});
    Say(m_app, sim::SuspendingCompleted{});
    EXPECT_EQ(Suspensions(), 0u);
}

TEST_F(AppLifetimeTest, HearsOfSuspendingFromTheAppAlone)
{
    Ask(sim::SuspendApp{});
    Take(0);
    Say(m_caller, sim::SuspendingCompleted{});
    EXPECT_EQ(Suspensions(), 0u);
}

TEST_F(AppLifetimeTest, TakesNoCompletionOfSuspendingAfterTheDeadline)
{
    RunTask();
    Pass(limits.idle);
    Take(1);
    Pass(limits.suspending);
    EXPECT_EQ(Suspensions(), 1u);
    RunTask();
    Say(m_app, sim::SuspendingCompleted{});
    EXPECT_EQ(Suspensions(), 1u);
}

TEST_F(AppLifetimeTest, SaysNothingOfAProcessThatCannotBeSuspended)
{
    m_processes->canSuspend = false;
    Ask(sim::SuspendApp{});
    CompleteSuspending();
    EXPECT_EQ(Reports(), Texts{L"suspending"});
    Push();
    EXPECT_EQ(Resumptions(), 0u);
}
