#include "doctor/show/Filter.h"

#include <gtest/gtest.h>

using namespace doctor;
using namespace std::chrono;

namespace
{

LogTime const nine = local_days(2024y / January / 5) + 9h;

LogLine Line()
{
    return {.time = nine,
            .level = zant::LogLevel::Info,
            .category = "AppService",
            .thread = 4660,
            .message = "Launch Done !! "};
}

} // namespace

TEST(Filter, LetsAllThroughWhenNothingIsSet)
{
    EXPECT_TRUE(Filter().Matches(Line()));
    EXPECT_TRUE(Filter().MatchesText("no line"));
}

TEST(Filter, LetsLinesThroughFromATimeOn)
{
    EXPECT_TRUE(Filter{.since = nine}.Matches(Line()));
    EXPECT_FALSE(Filter{.since = nine + 1ms}.Matches(Line()));
}

TEST(Filter, LetsLinesOfAThreadThrough)
{
    EXPECT_TRUE(Filter{.thread = 4660}.Matches(Line()));
    EXPECT_FALSE(Filter{.thread = 466}.Matches(Line()));
}

TEST(Filter, LetsALevelAndMoreSevereOnesThrough)
{
    EXPECT_TRUE(Filter{.level = zant::LogLevel::Debug}.Matches(Line()));
    EXPECT_TRUE(Filter{.level = zant::LogLevel::Info}.Matches(Line()));
    EXPECT_FALSE(Filter{.level = zant::LogLevel::Warn}.Matches(Line()));
}

TEST(Filter, LetsACategoryThroughInUpperOrLowerCase)
{
    EXPECT_TRUE(Filter{.category = "appSERVICE"}.Matches(Line()));
    EXPECT_FALSE(Filter{.category = "AppServic"}.Matches(Line()));
}

TEST(Filter, LetsMessagesThroughThatHoldATextInUpperOrLowerCase)
{
    EXPECT_TRUE(Filter{.text = "launch done !!"}.Matches(Line()));
    EXPECT_TRUE(Filter{.text = "LAUNCH"}.Matches(Line()));
    EXPECT_FALSE(Filter{.text = "AppService"}.Matches(Line()));
    EXPECT_FALSE(Filter{.text = "launched"}.Matches(Line()));
}

TEST(Filter, HoldsOtherTextAgainstTheTextAlone)
{
    EXPECT_TRUE(Filter{.text = "no"}.MatchesText("No line"));
    EXPECT_FALSE(Filter{.text = "yes"}.MatchesText("No line"));
    EXPECT_FALSE(Filter{.since = nine}.MatchesText("No line"));
    EXPECT_FALSE(Filter{.thread = 1}.MatchesText("No line"));
    EXPECT_FALSE(Filter{.level = zant::LogLevel::Trace}.MatchesText("No line"));
    EXPECT_FALSE(Filter{.category = "AppService"}.MatchesText("No line"));
}

TEST(FilterTime, IsADateWithOrWithoutATimeOfDay)
{
    auto const day = local_days(2024y / January / 5);
    EXPECT_EQ(ParseTime("2024-01-05"), day);
    EXPECT_EQ(ParseTime("2024-01-05 09:30"), day + 9h + 30min);
    EXPECT_EQ(ParseTime("2024-01-05 09:30:12"), day + 9h + 30min + 12s);
    EXPECT_EQ(ParseTime("2024-01-05T23:59:59"), day + 23h + 59min + 59s);
}

TEST(FilterTime, IsNothingElse)
{
    for (auto const* const text :
         {"", "yesterday", "2024-1-5", "2024-13-01", "2024-02-30", "2024-01-05 24:00", "2024-01-05 09:60",
          "2024-01-05 09:30:60", "2024-01-05 9:30", "2024-01-05 09:30:12.0", "2024T01-05"})
    {
        EXPECT_EQ(ParseTime(text), std::nullopt) << text;
    }
}
