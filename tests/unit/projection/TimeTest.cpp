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
    FILETIME const epoch{0, 0};
    EXPECT_EQ(clock_type::from_file_time(epoch).time_since_epoch().count(), 0);
    EXPECT_EQ(clock_type::to_time_t(clock_type::from_time_t(0)), 0);
    EXPECT_EQ(clock_type::from_time_t(0).time_since_epoch(), 11'644'473'600s);
}

TEST(Time, FileTimesComeAndGo)
{
    FILETIME const time{0x89ABCDEF, 0x01234567};
    auto const back = clock_type::to_file_time(clock_type::from_file_time(time));
    EXPECT_EQ(back.dwLowDateTime, time.dwLowDateTime);
    EXPECT_EQ(back.dwHighDateTime, time.dwHighDateTime);
}

TEST(Time, NowIsTheSystemsTime)
{
    FILETIME before;
    GetSystemTimeAsFileTime(&before);
    auto const now = clock_type::now();
    FILETIME after;
    GetSystemTimeAsFileTime(&after);
    EXPECT_LE(clock_type::from_file_time(before), now);
    EXPECT_LE(now, clock_type::from_file_time(after));
}
