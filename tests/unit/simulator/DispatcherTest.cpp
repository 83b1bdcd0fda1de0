#include "simulator/platform/Dispatcher.h"
#include "simulator/base/Handle.h"
#include "tests/unit/simulator/ManualTime.h"

#include <gtest/gtest.h>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace
{

using Numbers = std::vector<int>;

// Taken step by step.
class DispatcherTest : public testing::Test
{
  protected:
    sim::Dispatcher::Work Note(int number)
    {
        return [this, number] { m_done.push_back(number); };
    }

    void RunAll()
    {
        while (m_dispatcher.Step())
        {
        }
    }

    // What has been done since the last call.
    Numbers Done()
    {
        RunAll();
        return std::exchange(m_done, {});
    }

    ManualTime m_time;
    std::vector<std::string> m_failures;
    sim::Dispatcher m_dispatcher{m_time, [this](std::exception const& error) { m_failures.push_back(error.what()); }};
    Numbers m_done;
};

// Run by a thread.
class DispatcherThreadTest : public DispatcherTest
{
  protected:
    ~DispatcherThreadTest() override { Stop(); }

    void Stop()
    {
        m_dispatcher.Stop();
        if (m_thread.joinable())
        {
            m_thread.join();
        }
    }

    std::thread m_thread{[this] { m_dispatcher.Run(); }};
};

} // namespace

TEST_F(DispatcherTest, RunsOneWorkAtAStep)
{
    EXPECT_FALSE(m_dispatcher.Step());
    m_dispatcher.Post(Note(1));
    m_dispatcher.Post(Note(2));
    EXPECT_TRUE(m_done.empty());
    EXPECT_TRUE(m_dispatcher.Step());
    EXPECT_EQ(m_done, Numbers{1});
    EXPECT_TRUE(m_dispatcher.Step());
    EXPECT_EQ(m_done, (Numbers{1, 2}));
    EXPECT_FALSE(m_dispatcher.Step());
}

TEST_F(DispatcherTest, RunsWhatWorkPostsBehindWhatWaits)
{
    m_dispatcher.Post([this] {
        m_dispatcher.Post(Note(3));
        m_done.push_back(1);
    });
    m_dispatcher.Post(Note(2));
    EXPECT_EQ(Done(), (Numbers{1, 2, 3}));
}

TEST_F(DispatcherTest, RunsATimerWhenItsTimeIsOverOnce)
{
    m_dispatcher.SetTimer(100, Note(1));
    m_time.Advance(99);
    EXPECT_EQ(Done(), Numbers{});
    m_time.Advance(1);
    EXPECT_EQ(Done(), Numbers{1});
    m_time.Advance(1'000);
    EXPECT_EQ(Done(), Numbers{});
}

TEST_F(DispatcherTest, RunsATimerOfNoTimeAtTheNextStep)
{
    m_dispatcher.SetTimer(0, Note(1));
    EXPECT_TRUE(m_done.empty());
    EXPECT_EQ(Done(), Numbers{1});
}

TEST_F(DispatcherTest, RunsTimersInTheOrderOfTheirTimesThenOfTheirSetting)
{
    m_dispatcher.SetTimer(40, Note(3));
    m_dispatcher.SetTimer(10, Note(1));
    m_dispatcher.SetTimer(40, Note(4));
    m_time.Advance(20);
    m_dispatcher.SetTimer(10, Note(2));
    m_time.Advance(1'000);
    EXPECT_EQ(Done(), (Numbers{1, 2, 3, 4}));
}

TEST_F(DispatcherTest, RunsATimerThatIsDueBeforeWhatWasPosted)
{
    m_dispatcher.Post(Note(2));
    m_dispatcher.SetTimer(10, Note(1));
    m_dispatcher.SetTimer(11, Note(3));
    m_time.Advance(10);
    EXPECT_EQ(Done(), (Numbers{1, 2}));
}

TEST_F(DispatcherTest, DoesNotRunACancelledTimer)
{
    auto const first = m_dispatcher.SetTimer(10, Note(1));
    auto const second = m_dispatcher.SetTimer(10, Note(2));
    EXPECT_NE(first, sim::Dispatcher::TimerId());
    EXPECT_NE(first, second);
    m_dispatcher.CancelTimer(first);
    m_dispatcher.CancelTimer(first);
    m_dispatcher.CancelTimer({});
    m_time.Advance(10);
    EXPECT_EQ(Done(), Numbers{2});
    m_dispatcher.CancelTimer(second); // it has run
}

TEST_F(DispatcherTest, LetsATimerSetAndCancelOthers)
{
    auto const other = m_dispatcher.SetTimer(20, Note(2));
    m_dispatcher.SetTimer(10, [this, other] {
        m_dispatcher.CancelTimer(other);
        m_dispatcher.SetTimer(10, Note(1));
    });
    m_time.Advance(10);
    EXPECT_EQ(Done(), Numbers{});
    m_time.Advance(10);
    EXPECT_EQ(Done(), Numbers{1});
}

TEST_F(DispatcherTest, RunsNothingOnceItIsStopped)
{
    m_dispatcher.Post(Note(1));
    m_dispatcher.SetTimer(0, Note(2));
    m_dispatcher.Stop();
    EXPECT_FALSE(m_dispatcher.Step());
    m_dispatcher.Run(); // returns
    EXPECT_EQ(m_done, Numbers{});
}

TEST_F(DispatcherTest, IsIdleWithATimerThatIsNotDue)
{
    m_dispatcher.SetTimer(1, Note(1));
    EXPECT_EQ(m_dispatcher.WaitUntilIdle(), 0u);
}

TEST_F(DispatcherTest, CountsWhatWasPosted)
{
    m_dispatcher.Post(Note(1));
    m_dispatcher.Post(Note(2));
    RunAll();
    EXPECT_EQ(m_dispatcher.WaitUntilIdle(), 2u);
}

TEST_F(DispatcherTest, GoesOnAfterWorkAndATimerThatFail)
{
    m_dispatcher.SetTimer(0, [] { throw std::runtime_error("a timer"); });
    m_dispatcher.Post([] { throw std::runtime_error("work"); });
    m_dispatcher.Post(Note(1));
    EXPECT_EQ(Done(), Numbers{1});
    EXPECT_EQ(m_failures, (std::vector<std::string>{"a timer", "work"}));
}

TEST_F(DispatcherThreadTest, RunsWorkOfAllThreadsOnItsOwn)
{
    std::vector<std::thread::id> threads;
    auto const note = [&] { threads.push_back(std::this_thread::get_id()); };
    std::thread other([&] {
        for (int i = 0; i < 100; ++i)
        {
            m_dispatcher.Post(note);
        }
    });
    for (int i = 0; i < 100; ++i)
    {
        m_dispatcher.Post(note);
    }
    other.join();
    EXPECT_EQ(m_dispatcher.WaitUntilIdle(), 200u);
    EXPECT_EQ(threads, std::vector(200, m_thread.get_id()));
}

TEST_F(DispatcherThreadTest, WaitsForTheWorkThatItPosts)
{
    for (int i = 0; i < 100; ++i)
    {
        m_dispatcher.PostAndWait(Note(i));
        ASSERT_EQ(m_done.size(), static_cast<std::size_t>(i) + 1);
    }
}

TEST_F(DispatcherThreadTest, DoesNotWaitLongerForWorkThatFails)
{
    m_dispatcher.PostAndWait([] { throw std::runtime_error("broken"); });
    EXPECT_EQ(m_failures, std::vector<std::string>{"broken"});
    m_dispatcher.PostAndWait(Note(1));
    EXPECT_EQ(m_done, Numbers{1});
}

TEST_F(DispatcherThreadTest, RunsATimerWhenTheTimeHasChanged)
{
    m_dispatcher.PostAndWait([this] { m_dispatcher.SetTimer(3'600'000, Note(1)); });
    m_dispatcher.WaitUntilIdle();
    EXPECT_EQ(m_done, Numbers{});
    m_time.Advance(3'600'000);
    m_dispatcher.TimeChanged();
    m_dispatcher.WaitUntilIdle();
    EXPECT_EQ(m_done, Numbers{1});
}

TEST_F(DispatcherThreadTest, IsNotIdleWhileWorkRuns)
{
    sim::Handle const started(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    sim::Handle const release(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    auto const held = std::make_shared<int>();
    m_dispatcher.Post([&, held] {
        SetEvent(started.Get());
        WaitForSingleObject(release.Get(), INFINITE);
        m_done.push_back(1);
    });
    WaitForSingleObject(started.Get(), INFINITE);
    SetEvent(release.Get());
    EXPECT_EQ(m_dispatcher.WaitUntilIdle(), 1u);
    EXPECT_EQ(m_done, Numbers{1});
    EXPECT_EQ(held.use_count(), 1); // the work has let go of what it held
}

TEST_F(DispatcherThreadTest, StopsAfterTheWorkThatItIsAt)
{
    m_dispatcher.Post([this] {
        m_dispatcher.Post(Note(2));
        m_dispatcher.Stop();
        m_done.push_back(1);
    });
    m_thread.join();
    EXPECT_EQ(m_done, Numbers{1});
    m_dispatcher.WaitUntilIdle(); // does not wait for what never runs
}
