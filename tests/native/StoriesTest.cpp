#include "doctor/stories/Story.h"

#include "doctor/stories/Remark.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <set>

using doctor::EndOf;
using doctor::Line;
using doctor::Meaning;
using doctor::Result;
using doctor::Stories;

namespace
{

bool IsSentences(std::string_view text)
{
    return !text.empty() && text.front() >= 'A' && text.front() <= 'Z' && text.ends_with('.') &&
           text.find("  ") == text.npos;
}

void ExpectWhole(Meaning const& meaning, std::string_view name)
{
    EXPECT_TRUE(IsSentences(meaning.what)) << name << ": " << meaning.what;
    EXPECT_TRUE(IsSentences(meaning.cause)) << name << ": " << meaning.cause;
    EXPECT_TRUE(IsSentences(meaning.advice)) << name << ": " << meaning.advice;
}

} // namespace

TEST(Stories, HaveNamesOfTheirOwn)
{
    std::set<std::string_view> names;
    for (auto const& story : Stories())
    {
        EXPECT_NE(story.name, "");
        EXPECT_TRUE(names.insert(story.name).second) << story.name;
    }
}

TEST(Stories, BeginWithALineAndEndWithOthers)
{
    for (auto const& story : Stories())
    {
        EXPECT_NE(story.begin, Line::Other) << story.name;
        EXPECT_NE(story.ends.front().line, Line::Other) << story.name;
        std::set<Line> lines;
        for (auto const& end : story.ends)
        {
            EXPECT_TRUE(end.line == Line::Other || lines.insert(end.line).second)
                << story.name << " ends twice in " << MessageOf(end.line);
            EXPECT_EQ(EndOf(story, end.line), end.line == Line::Other ? nullptr : &end) << story.name;
        }
    }
}

TEST(Stories, SayWhatEachFailureMeans)
{
    for (auto const& story : Stories())
    {
        for (auto const& end : story.ends)
        {
            if (end.result == Result::Failed)
            {
                ExpectWhole(end.meaning, story.name);
            }
            else
            {
                EXPECT_EQ(end.meaning.what, "") << story.name;
            }
        }
        if (story.limit.count() > 0)
        {
            ExpectWhole(story.absent, story.name);
        }
        else
        {
            EXPECT_EQ(story.absent.what, "") << story.name;
        }
    }
}

TEST(Stories, AreCertainOnlyWithinALimit)
{
    for (auto const& story : Stories())
    {
        EXPECT_TRUE(!story.isCertain || story.limit.count() > 0) << story.name;
    }
}

// An unknown command, and a task of another name, leave no further line in a process that lives.
TEST(Stories, AreNotCertainWhereTheAppWritesNothingForWhatItDoesNotKnow)
{
    for (auto const& story : Stories())
    {
        EXPECT_FALSE(story.isCertain && story.begin == Line::RequestReceived) << story.name;
        EXPECT_FALSE(story.isCertain && story.begin == Line::BackgroundActivated) << story.name;
    }
}

TEST(Stories, TellOfEachStageButThePackage)
{
    std::set<doctor::Stage> worked;
    std::set<doctor::Stage> failed;
    for (auto const& story : Stories())
    {
        for (auto const& end : story.ends)
        {
            if (end.line != Line::Other && end.result == Result::Worked)
            {
                worked.insert(story.stage);
            }
        }
        if (story.limit.count() > 0)
        {
            failed.insert(story.stage);
        }
    }
    EXPECT_EQ(worked.size(), doctor::stageCount - 1);
    EXPECT_FALSE(worked.contains(doctor::Stage::Package)); // the banner alone tells it
    EXPECT_EQ(failed.size(), doctor::stageCount - 1);
}
