#include "explore/harness/Refusal.h"

#include <gtest/gtest.h>

using namespace explore;

TEST(RefusalTest, OfAStoryNamesTheOthers)
{
    EXPECT_EQ(NoStory("story", "lines", {"line-x-line", "start-x-start"}),
              "there is no story lines; there are: line-x-line, start-x-start");
}

TEST(RefusalTest, OfAStepSaysHowFarThePlayGoes)
{
    EXPECT_EQ(NoStep({400, "kill"}, 30), "400=kill cannot be played; the last step of that play is 29");
    EXPECT_EQ(NoStep({0, "kill"}, 0), "0=kill cannot be played; that play has no steps");
}

TEST(RefusalTest, OfASecondDeviationSaysThatThereIsOne)
{
    EXPECT_EQ(NoSecond({12, "B"}), "12=B cannot be played; that step has one deviation");
}

TEST(RefusalTest, OfAChoiceNamesTheOthers)
{
    EXPECT_EQ(NoChoice({12, "C"}, {"A", "kill"}), "12=C cannot be played; at that step there are: A, kill");
}

TEST(RefusalTest, GoesToStandardErrorAndIsAWrongArgument)
{
    testing::internal::CaptureStderr();
    EXPECT_EQ(Refuse("log", "there is no option --deep"), 2);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "explore log: there is no option --deep\n");
}
