#include "doctor/stories/Line.h"

#include "tests/native/AllLines.h"

#include <gtest/gtest.h>
#include <set>
#include <string>

using doctor::Line;
using doctor::LineOf;
using doctor::MessageOf;

TEST(Lines, AreEachRecognisedByTheirMessage)
{
    for (auto const line : test::AllLines())
    {
        EXPECT_NE(MessageOf(line), "") << static_cast<int>(line);
        EXPECT_EQ(LineOf(MessageOf(line)), line) << MessageOf(line);
    }
}

TEST(Lines, ThatEndInAValueAreRecognisedWithIt)
{
    std::set<Line> withValue;
    for (auto const line : test::AllLines())
    {
        if (LineOf(std::string(MessageOf(line)) + "x") == line)
        {
            withValue.insert(line);
        }
    }
    using enum Line;
    EXPECT_EQ(withValue,
              (std::set<Line>{ChannelUri, Bit, SuiteVersion, SystemBuild, SystemLocale, SystemName, SystemVersion}));
}

TEST(Lines, OfOtherTextsAreOther)
{
    for (auto const* const text : {"", "Inside OnLaunched ", "inside OnLaunched", "Launch Done !!", "Received Channel"})
    {
        EXPECT_EQ(LineOf(text), Line::Other) << text;
    }
    EXPECT_EQ(MessageOf(Line::Other), "");
}
