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

    sim::StateFile File() { return {m_file, m_journal}; }

    test::TemporaryFolder m_folder;
    ManualTime m_time;
    sim::Journal m_journal{L"", m_time};
    std::wstring m_file = m_folder / L"clock.txt";
};

} // namespace

TEST_F(ClockTest, GoesWithTheTime)
{
    sim::Clock const clock(File(), m_time);
    EXPECT_EQ(clock.Now(), m_time.Utc());
    m_time.Advance(90'000);
    EXPECT_EQ(clock.Now(), m_time.Utc());
}

TEST_F(ClockTest, StaysAheadAfterARestart)
{
    sim::Clock clock(File(), m_time);
    clock.Advance(100'000);
    clock.Advance(5);
    EXPECT_EQ(clock.Now(), In(100'005));
    m_time.Advance(1);
    EXPECT_EQ(sim::Clock(File(), m_time).Now(), In(100'005));
}

TEST_F(ClockTest, DoesNotMoveWhenItCannotBeKept)
{
    sim::Clock clock({m_folder / L"missing\\clock.txt", m_journal}, m_time);
    EXPECT_THROW(clock.Advance(60), sim::Error);
    EXPECT_EQ(clock.Now(), m_time.Utc());
}

TEST_F(ClockTest, GoesNoFurtherThanAThousandYears)
{
    constexpr std::int64_t thousandYears = 1'000LL * 365 * 24 * 60;
    sim::Clock clock(File(), m_time);
    clock.Advance(thousandYears - 1);
    EXPECT_THROW(clock.Advance(2), sim::Error);
    EXPECT_THROW(clock.Advance(INT64_MAX), sim::Error);
    clock.Advance(1);
    EXPECT_EQ(sim::Clock(File(), m_time).Now(), In(thousandYears));
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
    EXPECT_EQ(sim::Clock(File(), m_time).Text(), sim::Clock::Text(m_time.Utc()));
}
