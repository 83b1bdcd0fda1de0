#include "logging/LineText.h"

#include <gtest/gtest.h>

using namespace zant;

namespace
{

constexpr wchar_t banner[] = L"****************************** VelmoNotificationCLient Started. "
                             L"*********************************";

// 09:30:12 on 5 January 2024
std::tm Morning()
{
    std::tm local = {};
    local.tm_year = 124;
    local.tm_mday = 5;
    local.tm_hour = 9;
    local.tm_min = 30;
    local.tm_sec = 12;
    return local;
}

LineParts Parts()
{
    return {.dateAndTime = L"01/05/24 09:30:12",
            .milliseconds = 45,
            .level = LogLevel::Info,
            .fields = {L"", L"ZEB", L"ZEB", L"ZEBMain", L"", L"ZEB"},
            .threadId = 4660,
            .message = banner};
}

std::wstring Composed(LineParts const& parts)
{
    std::wstring line = L"whatever was in the buffer";
    ComposeLine(line, L" | ", parts);
    return line;
}

} // namespace

TEST(LineText, TheDateIsMonthDayYearAndTheTimeHas24Hours)
{
    EXPECT_EQ(DateAndTimeText(Morning()), L"01/05/24 09:30:12");
    auto evening = Morning();
    evening.tm_hour = 21;
    evening.tm_mon = 11;
    evening.tm_mday = 31;
    EXPECT_EQ(DateAndTimeText(evening), L"12/31/24 21:30:12");
}

TEST(LineText, TheBannersLineIsComposedColumnByColumn)
{
    EXPECT_EQ(Composed(Parts()),
              std::wstring(L"01/05/24 09:30:12:045 | [INFO] |  | ZEB | ZEB | ZEBMain |  | ZEB | 4660 | ") + banner);
}

TEST(LineText, MillisecondsHaveThreeDigits)
{
    auto parts = Parts();
    parts.milliseconds = 0;
    EXPECT_EQ(Composed(parts).substr(0, 21), L"01/05/24 09:30:12:000");
    parts.milliseconds = 7;
    EXPECT_EQ(Composed(parts).substr(0, 21), L"01/05/24 09:30:12:007");
    parts.milliseconds = 999;
    EXPECT_EQ(Composed(parts).substr(0, 21), L"01/05/24 09:30:12:999");
}

TEST(LineText, AnEmptyFieldKeepsItsColumn)
{
    auto parts = Parts();
    parts.fields = {L"", L"", L"", L"x", L"", L""};
    parts.message = L"m";
    EXPECT_EQ(Composed(parts), L"01/05/24 09:30:12:045 | [INFO] |  |  |  | x |  |  | 4660 | m");
}

TEST(LineText, EveryFieldStandsInItsPlace)
{
    auto parts = Parts();
    parts.fields = {L"1", L"2", L"3", L"4", L"5", L"6"};
    parts.message = L"m";
    EXPECT_EQ(Composed(parts), L"01/05/24 09:30:12:045 | [INFO] | 1 | 2 | 3 | 4 | 5 | 6 | 4660 | m");
}

TEST(LineText, AThreadIdIsWrittenInFull)
{
    auto parts = Parts();
    parts.message = L"m";
    parts.threadId = 4'294'967'295;
    EXPECT_TRUE(Composed(parts).ends_with(L" | 4294967295 | m"));
    parts.threadId = 0;
    EXPECT_TRUE(Composed(parts).ends_with(L" | 0 | m"));
}

TEST(LineText, AnUnknownLevelIsNamedAll)
{
    auto parts = Parts();
    parts.level = LogLevel{31};
    EXPECT_EQ(Composed(parts).substr(21, 11), L" | [ALL] | ");
}

TEST(LineText, TheSeparatorIsTheTargets)
{
    auto parts = Parts();
    parts.message = L"m";
    std::wstring line;
    ComposeLine(line, L";", parts);
    EXPECT_EQ(line, L"01/05/24 09:30:12:045;[INFO];;ZEB;ZEB;ZEBMain;;ZEB;4660;m");
}

TEST(LineText, AMessageIsNeverCut)
{
    std::wstring const message(100'000, L'x');
    auto parts = Parts();
    parts.message = message;
    EXPECT_TRUE(Composed(parts).ends_with(L" | " + message));
}
