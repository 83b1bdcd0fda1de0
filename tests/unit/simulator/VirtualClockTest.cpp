#include "simulator/services/VirtualClock.h"
#include "simulator/model/Error.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <windows.h>

TEST(VirtualClock, GoesWithTheWallClock)
{
    test::TemporaryFolder const folder;
    sim::VirtualClock const clock(folder / L"clock.txt");
    FILETIME before;
    GetSystemTimeAsFileTime(&before);
    auto const wall = (static_cast<std::int64_t>(before.dwHighDateTime) << 32) | before.dwLowDateTime;
    auto const now = clock.Now();
    EXPECT_GE(now, wall);
    EXPECT_LT(now, wall + sim::VirtualClock::minute);
}

TEST(VirtualClock, StaysAheadAfterARestart)
{
    test::TemporaryFolder const folder;
    sim::VirtualClock clock(folder / L"clock.txt");
    auto const before = clock.Now();
    clock.Advance(100'000);
    clock.Advance(5);
    EXPECT_GE(clock.Now(), before + 100'005 * sim::VirtualClock::minute);
    sim::VirtualClock const restarted(folder / L"clock.txt");
    EXPECT_GE(restarted.Now(), before + 100'005 * sim::VirtualClock::minute);
    EXPECT_LT(restarted.Now(), before + 100'006 * sim::VirtualClock::minute);
}

TEST(VirtualClock, DoesNotMoveWhenItCannotBeKept)
{
    test::TemporaryFolder const folder;
    sim::VirtualClock clock(folder / L"missing\\clock.txt");
    auto const before = clock.Now();
    EXPECT_THROW(clock.Advance(60), sim::Error);
    EXPECT_LT(clock.Now(), before + 60 * sim::VirtualClock::minute);
}

TEST(VirtualClock, IgnoresAFileThatIsNone)
{
    test::TemporaryFolder const folder;
    test::WriteBytes(folder / L"clock.txt", "nonsense 'unclosed\r\nminutes-ahead 5\r\n");
    EXPECT_NO_THROW(sim::VirtualClock(folder / L"clock.txt"));
}

TEST(VirtualClock, ShowsTheLocalTime)
{
    SYSTEMTIME local;
    GetLocalTime(&local);
    EXPECT_EQ(std::stoi(sim::VirtualClock::Text(sim::VirtualClock(L"").Now())), local.wYear);
}
