#include "tests/unit/simulator/ServicesFixture.h"

namespace
{

using Texts = std::vector<std::wstring>;

constexpr unsigned atOnce = 1;

class TaskLimits : public ServicesFixture
{
  protected:
    // A push task's instance that has been started.
    void StartTask()
    {
        Register(L"A Task", L"push");
        Ask(m_app, {L"create-channel"});
        EXPECT_EQ(Push(), L"sent");
        Reports();
    }
};

} // namespace

TEST_F(TaskLimits, CancelATaskThatTakesTooLongThenEndTheApp)
{
    Restart({atOnce, atOnce, never});
    StartTask();
    Return(0);
    WaitForEndings(1);
    EXPECT_EQ(m_app->received, (std::vector<sim::Message>{{L"cancel", L"1", L"", L"9"}}));
    EXPECT_EQ(Reports(), (Texts{L"task-cancelled instance=1 name='A Task' reason=ExecutionTimeExceeded",
                                L"task-overdue instance=1 name='A Task'"}));
}

TEST_F(TaskLimits, LeaveTheAppAloneThatCompletesACancelledTask)
{
    Restart({atOnce, never, never});
    StartTask();
    Return(0);
    WaitForReport(L"task-cancelled instance=1 name='A Task' reason=ExecutionTimeExceeded");
    Complete(0);
    EXPECT_EQ(Reports().back(), L"task-completed instance=1 name='A Task'");
    EXPECT_EQ(m_endings, 0u);
}

TEST_F(TaskLimits, EndAnAppThatDoesNotReturn)
{
    Restart({atOnce, atOnce, never});
    StartTask();
    Take(0);
    WaitForEndings(1);
    EXPECT_TRUE(m_app->received.empty());
}

TEST_F(TaskLimits, BeginWhenTheAppTakesTheTask)
{
    Restart({atOnce, atOnce, never});
    StartTask();
    EXPECT_EQ(m_endings, 0u);
    EXPECT_TRUE(Reports().empty());
    Take(0);
    WaitForEndings(1);
}

TEST_F(TaskLimits, DoNotHoldForAnAppServiceWhileItsCallerLives)
{
    Restart({atOnce, atOnce, never});
    Open(m_caller);
    Reports();
    StartTask(); // its own limit comes later than the app service's would
    Return(1);
    WaitForEndings(1);
    for (auto const& report : Reports())
    {
        EXPECT_EQ(report.find(L"instance=1"), report.npos);
    }
}

TEST_F(TaskLimits, EndAnAppThatDoesNotLetGoOfAClosedAppService)
{
    Restart({never, atOnce, never});
    auto const connection = Open(m_caller);
    Tell(m_caller, {L"close", connection, L"caller"});
    WaitForEndings(1);
    EXPECT_EQ(Reports().back(), L"task-overdue instance=1 name=a.service");
}

TEST_F(TaskLimits, CancelOnce)
{
    StartTask();
    Return(0);
    Do([](sim::Services& services) { services.CancelTasks(7); });
    Do([](sim::Services& services) { services.CancelTasks(8); });
    EXPECT_EQ(m_app->received, (std::vector<sim::Message>{{L"cancel", L"1", L"", L"7"}}));
    EXPECT_EQ(Reports(), (Texts{L"task-cancelled instance=1 name='A Task' reason=SystemPolicy"}));
}

TEST_F(TaskLimits, TellOfACancellationWhenTheAppHasReturned)
{
    StartTask();
    Take(0);
    Do([](sim::Services& services) { services.CancelTasks(7); });
    EXPECT_TRUE(m_app->received.empty());
    Return(0);
    EXPECT_EQ(m_app->received, (std::vector<sim::Message>{{L"cancel", L"1", L"", L"7"}}));
}

TEST_F(TaskLimits, EndAnAppWithNothingLeftToDo)
{
    Restart({never, never, atOnce});
    m_runsInBackgroundOnly = true;
    StartTask();
    Return(0);
    Complete(0);
    WaitForEndings(1);
    EXPECT_EQ(Reports(), (Texts{L"task-completed instance=1 name='A Task'", L"app-idle"}));
}

TEST_F(TaskLimits, DoNotEndAnAppOfTheForeground)
{
    StartTask();
    Return(0);
    Complete(0);
    EXPECT_EQ(Reports().back(), L"task-completed instance=1 name='A Task'");
}

TEST_F(TaskLimits, KeepAnAppThatHasMoreToDo)
{
    m_runsInBackgroundOnly = true;
    StartTask();
    Open(m_caller);
    Return(0);
    Complete(0);
    EXPECT_EQ(Reports().back(), L"task-completed instance=1 name='A Task'");
    Complete(1);
    EXPECT_EQ(Reports().back(), L"app-idle");
}

TEST_F(TaskLimits, DoNotEndAnIdleAppThatGotSomethingToDo)
{
    constexpr unsigned later = 30;
    Restart({never, later, atOnce});
    m_runsInBackgroundOnly = true;
    StartTask();
    Return(0);
    Do([&](sim::Services& services) {
        services.Tell(m_app, {L"task-completed", L"1"});
        services.Ask(m_caller, {L"open-app-service", service, family}, [](sim::Message const&) {});
        services.Taken(m_app, L"2");
        services.CancelTasks(7); // the end that this leads to comes after the idle app's would
    });
    WaitForReport(L"task-overdue instance=2 name=a.service");
    EXPECT_EQ(m_endings, 1u);
}
