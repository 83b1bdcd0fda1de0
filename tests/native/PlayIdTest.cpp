#include "explore/harness/PlayId.h"

#include <gtest/gtest.h>

using namespace explore;

TEST(PlayIdTest, NamesTheStoryAndItsDeviations)
{
    EXPECT_EQ(TextOf({"line-x-rotation", {{12, "B"}, {30, "kill"}}}), "line-x-rotation:12=B,30=kill");
    EXPECT_EQ(TextOf({"push"}), "push");
}

TEST(PlayIdTest, IsReadAsItWasWritten)
{
    for (auto const& play :
         {PlayId{"push"}, PlayId{"a", {{0, "B"}}}, PlayId{"line-x-rotation", {{12, "B"}, {12, "kill"}, {30, "A"}}}})
    {
        EXPECT_EQ(PlayIdOf(TextOf(play)), play);
    }
}

TEST(PlayIdTest, RefusesWhatIsNone)
{
    for (auto const* const text : {"", ":", "a:", "a:1", "a:1=", "a:=B", "a:x=B", "a:1=B,", "a:1=B 2=C", "a b",
                                   "a:2=B,1=A", "a:4294967296=B", "a:-1=B"})
    {
        EXPECT_EQ(PlayIdOf(text), std::nullopt) << text;
    }
}
