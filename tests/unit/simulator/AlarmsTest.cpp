#include "simulator/services/Alarms.h"

#include <condition_variable>
#include <gtest/gtest.h>
#include <memory>
#include <vector>

namespace
{

class AlarmClocks : public testing::Test
{
  protected:
    void Set(unsigned milliseconds, int what)
    {
        std::lock_guard const lock(m_mutex);
        m_alarms->Set(milliseconds, [this, what] { Ring(what); });
    }

    void Ring(int what)
    {
        m_rung.push_back(what);
        m_happened.notify_all();
    }

    void WaitFor(std::size_t count)
    {
        std::unique_lock lock(m_mutex);
        m_happened.wait(lock, [&] { return m_rung.size() >= count; });
    }

    std::mutex m_mutex;
    std::condition_variable m_happened;
    std::vector<int> m_rung;
    std::unique_ptr<sim::Alarms> m_alarms = std::make_unique<sim::Alarms>(m_mutex);
};

} // namespace

TEST_F(AlarmClocks, RingInTheOrderOfTheirTimes)
{
    Set(40, 2);
    Set(1, 1);
    WaitFor(2);
    EXPECT_EQ(m_rung, (std::vector<int>{1, 2}));
}

TEST_F(AlarmClocks, DoNotRingOnceCancelled)
{
    {
        std::lock_guard const lock(m_mutex);
        m_alarms->Cancel(m_alarms->Set(1, [this] { Ring(1); }));
        m_alarms->Cancel(0);
    }
    Set(20, 2);
    WaitFor(1);
    EXPECT_EQ(m_rung, (std::vector<int>{2}));
}

TEST_F(AlarmClocks, MaySetAndCancelOthersWhileTheyRing)
{
    {
        std::lock_guard const lock(m_mutex);
        auto const other = m_alarms->Set(20, [this] { Ring(2); });
        m_alarms->Set(0, [this, other] {
            m_alarms->Cancel(other);
            m_alarms->Set(40, [this] { Ring(1); });
        });
    }
    WaitFor(1);
    EXPECT_EQ(m_rung, (std::vector<int>{1}));
}

TEST_F(AlarmClocks, DoNotRingAfterTheirEnd)
{
    Set(3'600'000, 1);
    m_alarms.reset();
    EXPECT_TRUE(m_rung.empty());
}
