#include "explore/log/Replay.h"

#include <gtest/gtest.h>

using namespace explore;

namespace
{

struct Replayed
{
    int code;
    std::string output;
    std::string error;
};

Replayed Played(char const* id)
{
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    auto const code = Replay(*PlayIdOf(id));
    return {code, testing::internal::GetCapturedStdout(), testing::internal::GetCapturedStderr()};
}

void ExpectRefused(char const* id, std::string const& why)
{
    auto const [code, output, error] = Played(id);
    EXPECT_EQ(code, 2);
    EXPECT_EQ(output, "");
    EXPECT_EQ(error, "explore log: " + why + "\n");
}

} // namespace

TEST(ReplayTest, ShowsEachStepAndTheOutcome)
{
    auto const [code, output, error] = Played("line-x-line:0=B,1=kill");
    EXPECT_EQ(code, 0);
    EXPECT_EQ(error, "");
    EXPECT_TRUE(output.starts_with("    0  B  (goes on)\n    1  B  WaitForSingleObject: kill\n    2  A  (goes on)\n"));
    EXPECT_TRUE(output.ends_with("\n\n5 lines\n\nexplore log: played line-x-line:0=B,1=kill\n")) << output;
}

TEST(ReplayTest, SaysByWhichRuleALineIsLost)
{
    auto const [code, output, error] = Played("line-x-line:0=full");
    EXPECT_EQ(code, 0);
    EXPECT_NE(output.find("lost: 'A1 says something' stands nowhere (by the rules: full-at-a-line)\n"),
              std::string::npos);
}

TEST(ReplayTest, EndsWith1WhereAFlawIsByNoRule)
{
    testing::internal::CaptureStdout();
    EXPECT_EQ(Show({"4 lines", {{"torn", "a line", rule::fullAtLine}, {"lost", "a line"}}}), 1);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "\n4 lines\ntorn: a line (by the rules: full-at-a-line)\nlost: a line\n");
}

TEST(ReplayTest, RefusesAStoryThatThereIsNot)
{
    auto const [code, output, error] = Played("lines:0=B");
    EXPECT_EQ(code, 2);
    EXPECT_EQ(output, "");
    EXPECT_TRUE(error.starts_with("explore log: there is no story lines; there are: start-x-start, line-x-line, "));
}

TEST(ReplayTest, RefusesAStepThatThereIsNot)
{
    ExpectRefused("line-x-line:400=B", "400=B cannot be played; the last step of that play is 25");
}

TEST(ReplayTest, RefusesAProcessThatCannotGoOn)
{
    ExpectRefused("line-x-line:0=C",
                  "0=C cannot be played; at that step there are: A, B, kill, full, almost-full, second");
    ExpectRefused("line-x-line:2=B,3=B",
                  "3=B cannot be played; at that step there are: A, kill, full, almost-full, second");
}

TEST(ReplayTest, NamesTheFirstOfSeveralThatCannotBe)
{
    ExpectRefused("line-x-line:2=B,3=B,4=B",
                  "3=B cannot be played; at that step there are: A, kill, full, almost-full, second");
}

TEST(ReplayTest, RefusesWhatIsNeitherAProcessNorAFault)
{
    ExpectRefused("line-x-line:0=stop",
                  "0=stop cannot be played; at that step there are: A, B, kill, full, almost-full, second");
}

TEST(ReplayTest, RefusesASecondDeviationAtAStep)
{
    ExpectRefused("line-x-line:0=B,0=kill", "0=kill cannot be played; that step has one deviation");
}
