#include "logging/DatedName.h"

#include "tests/support/WrappedSystem.h"

#include <gtest/gtest.h>

using namespace test;
using namespace zant;

namespace
{

SYSTEMTIME At(WORD year, WORD month, WORD day, WORD hour, WORD minute, WORD second)
{
    SYSTEMTIME time = {};
    time.wYear = year;
    time.wMonth = month;
    time.wDay = day;
    time.wHour = hour;
    time.wMinute = minute;
    time.wSecond = second;
    return time;
}

} // namespace

TEST(DatedName, HasTheDateUnpaddedAndTheTimePadded)
{
    EXPECT_EQ(DatedPath(L"C:\\logs\\KZEB.log", At(2024, 1, 5, 9, 30, 12)), L"C:\\logs\\KZEB 2024-1-5 09-30-12.log");
    EXPECT_EQ(DatedPath(L"C:\\logs\\KZEB.log", At(2024, 12, 31, 0, 0, 0)), L"C:\\logs\\KZEB 2024-12-31 00-00-00.log");
}

TEST(DatedName, HasTheTimeOf24Hours)
{
    EXPECT_EQ(DatedPath(L"KZEB.log", At(2024, 1, 5, 21, 5, 7)), L"KZEB 2024-1-5 21-05-07.log");
}

TEST(DatedName, OfANameWithoutExtensionHasNone)
{
    EXPECT_EQ(DatedPath(L"C:\\a.b\\log", At(2024, 1, 5, 9, 30, 12)), L"C:\\a.b\\log 2024-1-5 09-30-12");
}

TEST(DatedName, CountsDaysBackAcrossMonthsAndYears)
{
    auto const newYear = At(2024, 1, 2, 0, 30, 0);
    EXPECT_EQ(DateText(newYear), L"2024-1-2");
    EXPECT_EQ(DateText(newYear, 1), L"2024-1-1");
    EXPECT_EQ(DateText(newYear, 2), L"2023-12-31");
    EXPECT_EQ(DateText(newYear, 3), L"2023-12-30");
    EXPECT_EQ(DateText(At(2024, 3, 1, 0, 0, 0), 1), L"2024-2-29");
}

TEST(DatedName, HasTheDateOfTheUsersDefaultLocale)
{
    std::wstring locale = L"none asked for";
    DWORD flags = MAXDWORD;
    GetDateFormatCall const format([&](auto next, wchar_t const* name, DWORD asked, auto... arguments) {
        locale = name != LOCALE_NAME_USER_DEFAULT ? name : L"the user's";
        flags = asked;
        return next(name, asked, arguments...);
    });
    DateText(At(2024, 1, 5, 9, 30, 12));
    EXPECT_EQ(locale, L"the user's");
    EXPECT_EQ(flags, 0u);
}

TEST(DatedName, HasTheTimeOfTheUsersDefaultLocaleForcedTo24Hours)
{
    std::wstring locale = L"none asked for";
    DWORD flags = 0;
    GetTimeFormatCall const format([&](auto next, wchar_t const* name, DWORD asked, auto... arguments) {
        locale = name != LOCALE_NAME_USER_DEFAULT ? name : L"the user's";
        flags = asked;
        return next(name, asked, arguments...);
    });
    DatedPath(L"KZEB.log", At(2024, 1, 5, 9, 30, 12));
    EXPECT_EQ(locale, L"the user's");
    EXPECT_EQ(flags, static_cast<DWORD>(TIME_FORCE24HOURFORMAT));
}

TEST(DatedName, IsMadeOfADateOrATimeAlone)
{
    {
        GetDateFormatCall const fault(Failing(0, ERROR_INVALID_PARAMETER));
        EXPECT_EQ(DatedPath(L"KZEB.log", At(2024, 1, 5, 9, 30, 12)), L"KZEB  09-30-12.log");
    }
    GetTimeFormatCall const fault(Failing(0, ERROR_INVALID_PARAMETER));
    EXPECT_EQ(DatedPath(L"KZEB.log", At(2024, 1, 5, 9, 30, 12)), L"KZEB 2024-1-5 .log");
}

TEST(DatedName, IsEmptyWithNeitherDateNorTime)
{
    GetDateFormatCall const noDate(Failing(0, ERROR_INVALID_PARAMETER));
    GetTimeFormatCall const noTime(Failing(0, ERROR_INVALID_PARAMETER));
    EXPECT_EQ(DatedPath(L"KZEB.log", At(2024, 1, 5, 9, 30, 12)), L"");
}
