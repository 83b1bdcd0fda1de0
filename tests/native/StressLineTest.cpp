#include "explore/stress/StressLine.h"

#include "doctor/log/LogLine.h"

#include <gtest/gtest.h>

using namespace explore::stress;

TEST(StressLine, SaysItsNameAgainAndAgain)
{
    auto const message = MessageOf({12, 345});
    ASSERT_GE(message.size(), 40u);
    for (std::size_t at = 0; at < message.size(); at += 7)
    {
        EXPECT_EQ(message.substr(at, 7), "12.345 ");
    }
}

TEST(StressLine, IsNamedByItsMessage)
{
    auto const name = LineNameIn(MessageOf({12, 345})).value_or(LineName{});
    EXPECT_EQ(name.life, 12u);
    EXPECT_EQ(name.number, 345u);
}

TEST(StressLine, OfAnotherMessageHasNoName)
{
    for (auto const* const message : {"", "12", "12.", "12.345", "12 345 ", "x.345 ", "12.x ", "Bit: 64"})
    {
        EXPECT_FALSE(LineNameIn(message)) << message;
    }
}

TEST(StressLine, DiffersInLengthFromOneToTheNext)
{
    EXPECT_NE(MessageOf({1, 100}).size(), MessageOf({1, 101}).size());
    EXPECT_NE(MessageOf({1, 100}).size(), MessageOf({2, 100}).size());
}

TEST(StressLine, OfTheFillerIsLongAndStillNotCut)
{
    EXPECT_GE(MessageOf({filler, 1}).size(), 4'000u);
    EXPECT_LT(MessageOf({filler, 999'999}).size(), 4'094u);
}

TEST(StressLine, BehindItsDateIsALineOfTheLog)
{
    auto const text = "01/05/24 09:30:12:045" + BehindDate(4660, "says something");
    auto const line = doctor::ParseLogLine(text).value_or(doctor::LogLine());
    EXPECT_EQ(line.level, zant::LogLevel::Info);
    EXPECT_EQ(line.product, product);
    EXPECT_EQ(line.component, component);
    EXPECT_EQ(line.category, category);
    EXPECT_EQ(line.thread, 4660u);
    EXPECT_EQ(line.message, "says something");
}

TEST(StressLine, BeginsWithADateOrAPartOfOne)
{
    for (auto const* const date : {"", "0", "01/05/24 09:3", "01/05/24 09:30:12:045"})
    {
        EXPECT_TRUE(IsDateOrBeginning(date)) << date;
    }
    for (auto const* const other : {"x", "01.05", "01/05/24 09:30:12:0x5", "01/05/24 09:30:12:0450"})
    {
        EXPECT_FALSE(IsDateOrBeginning(other)) << other;
    }
}
