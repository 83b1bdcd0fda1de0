#include "doctor/log/LogLine.h"

#include <gtest/gtest.h>
#include <string>

using namespace doctor;
using namespace std::chrono;

namespace
{

constexpr std::string_view example =
    "01/05/24 09:30:12:045 | [INFO] |  | ZEB | ZEB | ZEBMain | detail | origin | 4660 | Inside OnLaunched";

std::string WithStamp(std::string const& stamp)
{
    return stamp + std::string(example.substr(21));
}

} // namespace

TEST(LogLine, IsParsedIntoItsFields)
{
    auto const line = ParseLogLine(example);
    ASSERT_TRUE(line);
    EXPECT_EQ(line->time, local_days(2024y / January / 5) + 9h + 30min + 12s + 45ms);
    EXPECT_EQ(line->level, zant::LogLevel::Info);
    EXPECT_EQ(line->product, "ZEB");
    EXPECT_EQ(line->component, "ZEB");
    EXPECT_EQ(line->category, "ZEBMain");
    EXPECT_EQ(line->detail, "detail");
    EXPECT_EQ(line->origin, "origin");
    EXPECT_EQ(line->thread, 4660u);
    EXPECT_EQ(line->message, "Inside OnLaunched");
}

TEST(LogLine, KeepsTheSeparatorsOfItsMessage)
{
    EXPECT_EQ(ParseLogLine(std::string(example) + " | and | more")->message, "Inside OnLaunched | and | more");
    EXPECT_EQ(ParseLogLine("01/05/24 09:30:12:045 | [INFO] |  |  |  |  |  |  | 1 | ")->message, "");
}

TEST(LogLine, HasEveryLevelThatTheAppWrites)
{
    for (auto const level : {10, 20, 30, 40, 50, 60, 70, 0})
    {
        auto const wide = zant::LevelName(zant::LogLevel{level});
        EXPECT_EQ(LevelOf(std::string(wide.begin(), wide.end())), zant::LogLevel{level}) << level;
    }
    EXPECT_EQ(LevelOf("info"), std::nullopt);
    EXPECT_EQ(LevelOf(""), std::nullopt);
}

TEST(LogLine, WithAnImpossibleTimeIsNone)
{
    EXPECT_TRUE(ParseLogLine(WithStamp("02/29/24 23:59:59:999")));
    for (auto const* const stamp :
         {"02/30/24 09:30:12:045", "13/01/24 09:30:12:045", "00/01/24 09:30:12:045", "01/05/24 24:00:00:000",
          "01/05/24 09:60:12:045", "01/05/24 09:30:60:045", "01/05/24 09:30:12.045", "01-05-24 09:30:12:045",
          "1/05/24 009:30:12:045", "01/05/24 09:30:12:04x", "-1/05/24 09:30:12:045", "01/05/24 09:30:12:0450"})
    {
        EXPECT_FALSE(ParseLogLine(WithStamp(stamp))) << stamp;
    }
}

TEST(LogLine, WithoutAFieldOrWithAWrongOneIsNone)
{
    EXPECT_FALSE(ParseLogLine(""));
    EXPECT_FALSE(ParseLogLine("any text"));
    EXPECT_FALSE(ParseLogLine("01/05/24 09:30:12:045 | [INFO] |  | ZEB | ZEB | ZEBMain | detail | 4660 | no origin"));
    EXPECT_FALSE(ParseLogLine("01/05/24 09:30:12:045 | INFO |  | ZEB | ZEB | ZEBMain |  |  | 4660 | text"));
    EXPECT_FALSE(ParseLogLine("01/05/24 09:30:12:045 | [] |  | ZEB | ZEB | ZEBMain |  |  | 4660 | text"));
    EXPECT_FALSE(ParseLogLine("01/05/24 09:30:12:045 | [LOUD] |  | ZEB | ZEB | ZEBMain |  |  | 4660 | text"));
    EXPECT_FALSE(ParseLogLine("01/05/24 09:30:12:045 | [INFO] |  | ZEB | ZEB | ZEBMain |  |  | 12a | text"));
    EXPECT_FALSE(ParseLogLine("01/05/24 09:30:12:045 | [INFO] |  | ZEB | ZEB | ZEBMain |  |  | 4294967296 | text"));
}

TEST(LogLineGlued, IsFoundWhereAStampAndALevelBegin)
{
    auto const whole = std::string(example);
    EXPECT_EQ(FindGluedLine(whole), std::string::npos);
    EXPECT_EQ(FindGluedLine(whole + whole), whole.size());
    EXPECT_EQ(FindGluedLine(whole.substr(0, 30) + whole), 30u); // cut off in its level
    EXPECT_EQ(FindGluedLine(whole + " | [a] | [b]" + whole), whole.size() + 12);
    EXPECT_EQ(FindGluedLine(whole.substr(0, 5) + whole), 5u); // cut off in its stamp
}

TEST(LogLineGlued, IsNotFoundInMessagesThatOnlyLookAlike)
{
    EXPECT_EQ(FindGluedLine(std::string(example) + " | [INFO] | text"), std::string::npos);
    EXPECT_EQ(FindGluedLine(std::string(example) + "01/05/24 09:30:12:045 |[INFO]"), std::string::npos);
    EXPECT_EQ(FindGluedLine(std::string(example) + "99/05/24 09:30:12:045 | [INFO]"), std::string::npos);
    EXPECT_EQ(FindGluedLine(" | [INFO]"), std::string::npos);
}
