#include "doctor/log/LogTime.h"

#include <gtest/gtest.h>

using namespace doctor;
using namespace std::chrono;

TEST(LogTime, IsReadByTheLettersOfItsForm)
{
    auto const day = local_days(2024y / February / 29);
    EXPECT_EQ(TimeIn("2024-02-29", "YYYY-MM-DD"), day);
    EXPECT_EQ(TimeIn("29.02.24, 23:59:58 007", "DD.MM.YY, hh:mm:ss fff"), day + 23h + 59min + 58s + 7ms);
}

TEST(LogTime, HasTwoDigitsForAYearOfThisCenturyAndFourForAnyYear)
{
    EXPECT_EQ(TimeIn("01/05/00", "MM/DD/YY"), local_days(2000y / January / 5));
    EXPECT_EQ(TimeIn("01/05/99", "MM/DD/YY"), local_days(2099y / January / 5));
    EXPECT_EQ(TimeIn("0024-01-05", "YYYY-MM-DD"), local_days(24y / January / 5));
}

TEST(LogTime, IsNoneInAnotherFormOrWithoutSuchADayOrTimeOfDay)
{
    for (auto const* const text : {"", "2024-01-05", "2024-01-05 09:30 ", "2024-01-05T09:30", "2024-01-05 9:30x",
                                   "2024-01-05 0a:30", "2024-1-005 09:30", "2023-02-29 09:30", "2024-00-01 09:30",
                                   "2024-13-01 09:30", "2024-01-05 24:00", "2024-01-05 09:60"})
    {
        EXPECT_EQ(TimeIn(text, "YYYY-MM-DD hh:mm"), std::nullopt) << text;
    }
    EXPECT_EQ(TimeIn("2024-01-05 09:30:60", "YYYY-MM-DD hh:mm:ss"), std::nullopt);
}

TEST(LogTime, IsShownByDateTimeOfDayAndMilliseconds)
{
    EXPECT_EQ(TimeText(local_days(2024y / January / 5) + 9h + 30min + 12s + 45ms), "2024-01-05 09:30:12.045");
}
