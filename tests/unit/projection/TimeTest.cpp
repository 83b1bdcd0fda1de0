#include <windows.h>
#include <winrt/base.h>

#include <gtest/gtest.h>

using clock_type = winrt::clock;
using winrt::Windows::Foundation::DateTime;
using winrt::Windows::Foundation::TimeSpan;
using namespace std::chrono_literals;

TEST(Time, SpansCountHundredNanoseconds)
{
    EXPECT_EQ(TimeSpan(1s).count(), 10'000'000);
}

TEST(Time, DatesCountFromTheYear1601)
{
    winrt::file_time const epoch{0};
    EXPECT_EQ(clock_type::from_file_time(epoch).time_since_epoch().count(), 0);
    EXPECT_EQ(clock_type::to_time_t(clock_type::from_time_t(0)), 0);
    EXPECT_EQ(clock_type::from_time_t(0).time_since_epoch(), 11'644'473'600s);
}

TEST(Time, FileTimesComeAndGo)
{
    winrt::file_time const time{0x0123456789ABCDEF};
    EXPECT_EQ(clock_type::to_file_time(clock_type::from_file_time(time)).value, time.value);
}

TEST(Time, NowIsTheSystemsTime)
{
    auto const systemTime = [] {
        FILETIME time;
        GetSystemTimeAsFileTime(&time);
        return clock_type::from_file_time({static_cast<uint64_t>(time.dwHighDateTime) << 32 | time.dwLowDateTime});
    };
    auto const before = systemTime();
    auto const now = clock_type::now();
    EXPECT_LE(before, now);
    EXPECT_LE(now, systemTime());
}
