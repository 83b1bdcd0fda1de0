#include "logging/LocalTime.h"

#include "tests/support/WrappedSystem.h"

#include <ctime>
#include <gtest/gtest.h>

using namespace test;
using namespace zant;

namespace
{

std::wstring Expected(std::int64_t seconds)
{
    wchar_t text[32] = {};
    std::time_t const time = seconds;
    std::wcsftime(text, 32, L"%m/%d/%y %H:%M:%S", std::localtime(&time));
    return text;
}

} // namespace

TEST(LocalTime, NowIsTheSystemsTimeSince1970)
{
    auto const before = static_cast<std::uint64_t>(std::time(nullptr));
    auto const now = NowInMilliseconds() / 1'000;
    auto const after = static_cast<std::uint64_t>(std::time(nullptr));
    EXPECT_GE(now + 1, before); // the two clocks may be some milliseconds apart
    EXPECT_LE(now, after + 1);
}

TEST(LocalTime, NowKeepsItsMilliseconds)
{
    GetSystemTimeCall const clock([](auto, FILETIME* now) {
        auto const ticks = 116'444'736'000'000'000ull + 1'704'447'012'045ull * 10'000 + 9'999;
        *now = {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
    });
    EXPECT_EQ(NowInMilliseconds(), 1'704'447'012'045u);
}

TEST(LocalTimeOfASecond, IsTheLocalDateAndTime)
{
    SecondText text;
    EXPECT_EQ(text.Of(1'704'447'012), Expected(1'704'447'012));
}

TEST(LocalTimeOfASecond, FollowsTheSecondInBothDirections)
{
    SecondText text;
    for (auto const seconds : {1'704'447'012, 1'704'447'013, 1'704'447'012, 1'719'999'999, 0})
    {
        EXPECT_EQ(text.Of(seconds), Expected(seconds));
        EXPECT_EQ(text.Of(seconds), Expected(seconds));
    }
}

TEST(LocalTimeOfASecond, IsEmptyWhereThereIsNoLocalTime)
{
    SecondText text;
    EXPECT_EQ(text.Of(INT64_MAX), L"");
    EXPECT_EQ(text.Of(1'704'447'012), Expected(1'704'447'012));
}
