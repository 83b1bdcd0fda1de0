#include "tests/unit/explore/EitherSystem.h"

using namespace test;

using ClockRules = EitherSystem;

ON_EITHER_SYSTEM(ClockRules);

TEST_P(ClockRules, DateAndTimeAreFormattedAsThePicturesSay)
{
    struct
    {
        SYSTEMTIME time;
        std::wstring date;
        std::wstring text;
    } const cases[] = {
        {{2024, 1, 5, 5, 9, 30, 12, 45}, L"2024-1-5", L"09-30-12"},
        {{2023, 12, 0, 31, 0, 0, 0, 0}, L"2023-12-31", L"00-00-00"},
        {{2024, 2, 4, 29, 23, 59, 59, 999}, L"2024-2-29", L"23-59-59"},
    };
    for (auto const& [time, date, text] : cases)
    {
        wchar_t shown[80] = {};
        EXPECT_EQ(GetDateFormatEx(L"en-US", 0, &time, L"yyyy-M-d", shown, 80, nullptr),
                  static_cast<int>(date.size()) + 1);
        EXPECT_EQ(shown, date);
        EXPECT_EQ(GetTimeFormatEx(L"en-US", TIME_FORCE24HOURFORMAT, &time, L"hh'-'mm'-'ss", shown, 80),
                  static_cast<int>(text.size()) + 1);
        EXPECT_EQ(shown, text);
    }
}

TEST_P(ClockRules, ATextThatDoesNotFitIsNone)
{
    SYSTEMTIME const time = {2024, 1, 5, 5, 9, 30, 12, 45};
    wchar_t shown[4] = {};
    EXPECT_EQ(GetDateFormatEx(L"en-US", 0, &time, L"yyyy-M-d", shown, 4, nullptr), 0);
}

// Whatever the time zone is.
TEST_P(ClockRules, LocalTimeIsWithinADayOfUtc)
{
    FILETIME utc = {};
    GetSystemTimePreciseAsFileTime(&utc);
    SYSTEMTIME local = {};
    GetLocalTime(&local);
    FILETIME localTicks = {};
    EXPECT_TRUE(SystemTimeToFileTime(&local, &localTicks));
    auto const ticks = [](FILETIME time) {
        return static_cast<std::int64_t>((std::uint64_t{time.dwHighDateTime} << 32) | time.dwLowDateTime);
    };
    constexpr std::int64_t day = 86'400ll * 10'000'000;
    EXPECT_LT(std::abs(ticks(utc) - ticks(localTicks)), day);
}
