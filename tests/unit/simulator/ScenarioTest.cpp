#include "simulator/scenario/Scenario.h"
#include "simulator/base/Error.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"

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

TEST(ScenarioTest, IsNoneWithoutAStep)
{
    for (auto const* text : {L"", L"\r\n", L"# only a comment\n  \n"})
    {
        EXPECT_THROW(sim::ParseScenario(text), sim::Error) << testing::PrintToString(text);
    }
}

TEST(ScenarioTest, MayBeginWithAByteOrderMark)
{
    test::TemporaryFolder const folder;
    auto const path = folder / L"a.scenario";
    test::WriteBytes(path, "\xEF\xBB\xBFlaunch \xC3\xA4\n");
    EXPECT_EQ(sim::ReadScenario(path).at(0).words, (std::vector<std::wstring>{L"launch", L"\x00E4"}));
}

TEST(ScenarioTest, NamesTheFileThatHasNoStep)
{
    test::TemporaryFolder const folder;
    auto const path = folder / L"a.scenario";
    test::WriteBytes(path, "\xEF\xBB\xBF");
    try
    {
        sim::ReadScenario(path);
        FAIL();
    }
    catch (sim::Error const& error)
    {
        EXPECT_EQ(error.Message(), path + L": there is no step in it");
    }
}
