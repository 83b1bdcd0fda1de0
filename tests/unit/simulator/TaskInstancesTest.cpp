#include "tests/unit/simulator/ServicesFixture.h"

namespace
{

constexpr sim::Limits limits;
constexpr std::uint32_t systemPolicy = 7;
constexpr std::uint32_t energySaver = 11;
constexpr std::uint32_t executionTimeExceeded = 9;

class TaskInstancesTest : public ServicesFixture
{
  protected:
    // A push task's instance that has been started.
    void StartTask()
    {
        RegisterPush(L"A Task");
        Ask(m_app, sim::CreateChannel{});
        EXPECT_EQ(Push(), L"sent");
        Reports();
    }

    // How often the platform has ended the app.
    std::size_t Endings() const { return m_processes->killed.size(); }
};

} // namespace

TEST_F(TaskInstancesTest, CancelsATaskThatTakesTooLongThenEndsTheApp)
{
    StartTask();
    Return(0);
    Pass(limits.task - 1);
    EXPECT_TRUE(m_app->received.empty());
    Reports();
    Pass(1);
    EXPECT_EQ(m_app->received, Sent(sim::TaskCancelled{1, 0, executionTimeExceeded}));
    EXPECT_EQ(Reports(), (Texts{L"task-cancelled instance=1 name='A Task' wake=1 reason=ExecutionTimeExceeded"}));
    Pass(limits.afterCancel - 1);
    EXPECT_EQ(Endings(), 0u);
    Pass(1);
    EXPECT_EQ(Endings(), 1u);
    EXPECT_EQ(Reports(), (Texts{L"task-overdue instance=1 name='A Task' wake=1"}));
}

TEST_F(TaskInstancesTest, LeavesTheAppAloneThatCompletesACancelledTask)
{
    StartTask();
    Return(0);
    Pass(limits.task);
    Complete(0);
    EXPECT_EQ(Reports().back(), L"task-completed instance=1 name='A Task' wake=1");
    Pass(limits.afterCancel);
    EXPECT_EQ(Endings(), 0u);
    EXPECT_EQ(Reports(), Texts{});
}

TEST_F(TaskInstancesTest, LeavesTheAppAloneThatCompletesItsTask)
{
    StartTask();
    Return(0);
    Complete(0);
    m_app->received.clear();
    Reports();
    Pass(limits.task + limits.afterCancel);
    EXPECT_TRUE(m_app->received.empty());
    EXPECT_EQ(Reports(), Texts{});
    EXPECT_EQ(Endings(), 0u);
}

TEST_F(TaskInstancesTest, EndsAnAppThatDoesNotReturn)
{
    StartTask();
    Take(0);
    Pass(limits.task);
    Pass(limits.afterCancel);
    EXPECT_EQ(Endings(), 1u);
    EXPECT_TRUE(m_app->received.empty());
}

TEST_F(TaskInstancesTest, BeginsALimitWhenTheAppTakesTheTask)
{
    StartTask();
    Pass(limits.task + limits.afterCancel);
    EXPECT_EQ(Endings(), 0u);
    EXPECT_TRUE(Reports().empty());
    Take(0);
    Pass(limits.task - 1);
    EXPECT_EQ(Reports().back(), L"activated kind=background-task name='A Task' wake=1");
    Pass(1);
    EXPECT_EQ(Reports().size(), 1u);
}

TEST_F(TaskInstancesTest, HasNoLimitForAnAppServiceWhileItsCallerLives)
{
    Open(m_caller);
    Reports();
    Pass(limits.task);
    Pass(limits.afterCancel);
    EXPECT_EQ(Reports(), Texts{});
    EXPECT_EQ(Endings(), 0u);
}

TEST_F(TaskInstancesTest, EndsAnAppThatDoesNotLetGoOfAClosedAppService)
{
    auto const connection = Open(m_caller);
    Say(m_caller, sim::ConnectionClosed{connection, sim::ConnectionEnd::Caller});
    Pass(limits.afterCancel);
    EXPECT_EQ(Endings(), 1u);
    EXPECT_EQ(Reports().back(), L"task-overdue instance=1 name=a.service");
}

TEST_F(TaskInstancesTest, CancelsOnce)
{
    StartTask();
    Return(0);
    Reports();
    Ask(sim::CancelTasks{systemPolicy});
    Ask(sim::CancelTasks{energySaver});
    EXPECT_EQ(m_app->received, Sent(sim::TaskCancelled{1, 0, systemPolicy}));
    EXPECT_EQ(Reports(), (Texts{L"task-cancelled instance=1 name='A Task' wake=1 reason=SystemPolicy"}));
}

TEST_F(TaskInstancesTest, TellsOfACancellationWhenTheAppHasReturned)
{
    StartTask();
    Take(0);
    Ask(sim::CancelTasks{systemPolicy});
    EXPECT_TRUE(m_app->received.empty());
    Return(0);
    EXPECT_EQ(m_app->received, Sent(sim::TaskCancelled{1, 0, systemPolicy}));
}

TEST_F(TaskInstancesTest, HearsOfInstancesFromTheAppAlone)
{
    StartTask();
    Say(m_caller, sim::TaskReturned{1});
    Say(m_caller, sim::TaskCompleted{1});
    EXPECT_EQ(Reports(), Texts{});
    Return(0);
    Say(m_caller, sim::TaskCompleted{1});
    EXPECT_EQ(Reports(), Texts{L"activated kind=background-task name='A Task' wake=1"});
    Complete(0);
    EXPECT_EQ(m_app->received, Sent(sim::TaskEnded{1, 0}));
    EXPECT_TRUE(m_caller->received.empty());
}

TEST_F(TaskInstancesTest, EndsAnInstanceOnce)
{
    StartTask();
    Return(0);
    Complete(0);
    EXPECT_EQ(m_app->received, Sent(sim::TaskEnded{1, 0}));
    Reports();
    Complete(0);
    Say(m_app, sim::TaskReturned{1});
    EXPECT_EQ(m_app->received.size(), 1u);
    EXPECT_EQ(Reports(), Texts{});
}
