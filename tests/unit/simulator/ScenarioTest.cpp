#include "simulator/scenario/Scenario.h"
#include "simulator/base/Error.h"

#include <gtest/gtest.h>

TEST(ScenarioTest, HasAStepForEachLineThatSaysSomething)
{
    auto const steps = sim::ParseScenario(L"# a comment\r\nregister\r\n\r\n  expect log \"a b\" # why\nlaunch");
    ASSERT_EQ(steps.size(), 3u);
    EXPECT_EQ(steps[0].line, 2u);
    EXPECT_EQ(steps[0].text, L"register");
    EXPECT_EQ(steps[1].line, 4u);
    EXPECT_EQ(steps[1].words, (std::vector<std::wstring>{L"expect", L"log", L"a b"}));
    EXPECT_EQ(steps[2].line, 5u);
}

TEST(ScenarioTest, NamesTheLineThatItCannotRead)
{
    try
    {
        sim::ParseScenario(L"register\nexpect log 'open");
        FAIL();
    }
    catch (sim::Error const& error)
    {
        EXPECT_EQ(error.Message(), L"line 2: a quote ' is not closed");
    }
}
