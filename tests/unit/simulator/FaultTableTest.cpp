#include "simulator/protocol/FaultTable.h"
#include "simulator/base/Words.h"

#include <gtest/gtest.h>

namespace
{

sim::Fault Parse(std::wstring_view words)
{
    return sim::ParseFault(sim::SplitWords(words));
}

} // namespace

TEST(FaultTableTest, TriggersAsOftenAsWasAsked)
{
    sim::FaultTable table;
    table.Set(Parse(L"CoreApplication.Exit now 0x80004005 2"));
    EXPECT_FALSE(table.Take(L"CoreApplication"));
    EXPECT_TRUE(table.Take(L"CoreApplication.Exit"));
    EXPECT_TRUE(table.Take(L"CoreApplication.Exit"));
    EXPECT_FALSE(table.Take(L"CoreApplication.Exit"));
}

TEST(FaultTableTest, TriggersEachTimeWithoutACount)
{
    sim::FaultTable table;
    table.Set(Parse(L"CoreApplication.Exit now 0x80004005"));
    for (int i = 0; i < 100; ++i)
    {
        EXPECT_TRUE(table.Take(L"CoreApplication.Exit"));
    }
    table.Clear();
    EXPECT_FALSE(table.Take(L"CoreApplication.Exit"));
}

TEST(FaultTableTest, KeepsOnlyTheLatestFaultOfACall)
{
    sim::FaultTable table;
    table.Set(Parse(L"CoreApplication.Exit now 0x80004005"));
    table.Set(Parse(L"CoreApplication.Exit now 0x80070005 1"));
    EXPECT_EQ(table.Take(L"CoreApplication.Exit")->value, 0x80070005u);
    EXPECT_TRUE(table.All().empty());
}

TEST(FaultTableTest, LetsTheFirstCallsPass)
{
    sim::FaultTable table;
    table.Set(Parse(L"CoreApplication.Exit now 0x80004005 1 after 2"));
    EXPECT_FALSE(table.Take(L"CoreApplication.Exit"));
    EXPECT_FALSE(table.Take(L"CoreApplication.Exit"));
    EXPECT_TRUE(table.Take(L"CoreApplication.Exit"));
    EXPECT_FALSE(table.Take(L"CoreApplication.Exit"));
}

TEST(FaultTableTest, IsUsedUpByAnotherThatLetCallsPass)
{
    sim::FaultTable table;
    table.Set(Parse(L"CoreApplication.Exit now 0x80004005 2 after 2"));
    EXPECT_TRUE(table.Use(L"CoreApplication.Exit"));
    EXPECT_TRUE(table.Take(L"CoreApplication.Exit"));
    EXPECT_FALSE(table.Use(L"CoreApplication.Exit"));
}
