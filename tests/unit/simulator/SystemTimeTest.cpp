#include "simulator/platform/SystemTime.h"

#include <gtest/gtest.h>
#include <windows.h>

namespace
{

std::int64_t WallClock()
{
    FILETIME time;
    GetSystemTimeAsFileTime(&time);
    return (static_cast<std::int64_t>(time.dwHighDateTime) << 32) | time.dwLowDateTime;
}

} // namespace

TEST(SystemTimeTest, IsTheWallClocks)
{
    auto const before = WallClock();
    auto const time = sim::SystemTime().Utc();
    EXPECT_GE(time, before);
    EXPECT_LE(time, WallClock());
}

TEST(SystemTimeTest, CountsMilliseconds)
{
    auto const before = GetTickCount64();
    auto const ticks = sim::SystemTime().Ticks();
    EXPECT_GE(ticks, before);
    EXPECT_LE(ticks, GetTickCount64());
}
