#include "simulator/platform/Clock.h"
#include "simulator/base/Error.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/unit/simulator/ManualTime.h"

#include <gtest/gtest.h>
#include <windows.h>

namespace
{

class ClockTest : public testing::Test
{
  protected:
    std::int64_t In(std::int64_t minutes) const { return m_time.Utc() + minutes * sim::Clock::minute; }

    test::TemporaryFolder m_folder;
    std::wstring m_file = m_folder / L"clock.txt";
    ManualTime m_time;
};

} // namespace

TEST_F(ClockTest, GoesWithTheTime)
{
    sim::Clock const clock(m_file, m_time);
    EXPECT_EQ(clock.Now(), m_time.Utc());
    m_time.Advance(90'000);
    EXPECT_EQ(clock.Now(), m_time.Utc());
}

TEST_F(ClockTest, StaysAheadAfterARestart)
{
    sim::Clock clock(m_file, m_time);
    clock.Advance(100'000);
    clock.Advance(5);
    EXPECT_EQ(clock.Now(), In(100'005));
    m_time.Advance(1);
    EXPECT_EQ(sim::Clock(m_file, m_time).Now(), In(100'005));
}

TEST_F(ClockTest, DoesNotMoveWhenItCannotBeKept)
{
    sim::Clock clock(m_folder / L"missing\\clock.txt", m_time);
    EXPECT_THROW(clock.Advance(60), sim::Error);
    EXPECT_EQ(clock.Now(), m_time.Utc());
}

TEST_F(ClockTest, IgnoresAFileThatIsNone)
{
    test::WriteBytes(m_file, "nonsense 'unclosed\r\nminutes-ahead 5\r\n");
    EXPECT_NO_THROW(sim::Clock(m_file, m_time));
}

TEST_F(ClockTest, ShowsTheLocalTime)
{
    SYSTEMTIME local;
    GetLocalTime(&local);
    SYSTEMTIME utc;
    GetSystemTime(&utc);
    FILETIME now;
    SystemTimeToFileTime(&utc, &now);
    auto const text = sim::Clock::Text((static_cast<std::int64_t>(now.dwHighDateTime) << 32) | now.dwLowDateTime);
    EXPECT_EQ(std::stoi(text), local.wYear);
    EXPECT_EQ(sim::Clock(m_file, m_time).Text(), sim::Clock::Text(m_time.Utc()));
}
