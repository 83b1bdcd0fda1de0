#include "tests/unit/logging/LogFixture.h"

using namespace test;
using namespace zant;

namespace
{

class LogHeader : public LogFixture
{
  protected:
    LogHeader()
    {
        Configure(target);
        EXPECT_TRUE(target.Open());
        target.storedHeader = {.title = L"title", .entries = {{L"a: ", L"1"}, {L"b: ", L"2"}}, .closing = L"end"};
    }

    void Write(LogHeaderText const* header, LogLevel level = LogLevel::Info)
    {
        target.LogHeader(level, L"r", L"p", L"co", L"ca", header, true);
    }

    LogTargetDefault target;
};

} // namespace

TEST_F(LogHeader, WithoutOneGivenTheStoredOneIsWritten)
{
    target.headerPending = true;
    Write(nullptr);
    EXPECT_EQ(MessagesIn(LogPath()), (std::vector<std::wstring>{L"title", L"a: 1", L"b: 2", L"end"}));
    EXPECT_FALSE(target.headerPending);
}

TEST_F(LogHeader, EveryLineCarriesTheGivenLevelAndFields)
{
    Write(nullptr, LogLevel::Error);
    for (auto const& line : ReadLines(LogPath()))
    {
        auto const columns = Split(line, L" | ");
        ASSERT_EQ(columns.size(), 10u);
        EXPECT_EQ(std::vector(columns.begin() + 1, columns.begin() + 8),
                  (std::vector<std::wstring>{L"[ERROR]", L"r", L"p", L"co", L"ca", L"", L""}));
    }
}

TEST_F(LogHeader, WithTheLockFlagEachLineWaitsForTheMutex)
{
    int waits = 0;
    WaitCall const wait(Counting(waits));
    Write(nullptr);
    EXPECT_EQ(waits, 4);
    EXPECT_EQ(MessagesIn(LogPath()).size(), 4u);
}

TEST_F(LogHeader, WithoutTheLockFlagNoLineWaitsForTheMutex)
{
    int waits = 0;
    WaitCall const wait(Counting(waits));
    target.LogHeader(LogLevel::Info, L"", L"", L"", L"", nullptr, false);
    EXPECT_EQ(waits, 0);
    EXPECT_EQ(MessagesIn(LogPath()).size(), 4u);
}

TEST_F(LogHeader, BelowTheThresholdNothingIsWritten)
{
    Write(nullptr, LogLevel::Debug);
    EXPECT_EQ(ReadBytes(LogPath()), wideMark);
}

TEST_F(LogHeader, EmptyPartsAreLeftOut)
{
    target.storedHeader = {.entries = {{L"a: ", L""}}};
    Write(nullptr);
    EXPECT_EQ(MessagesIn(LogPath()), std::vector<std::wstring>{L"a: "});
}

TEST_F(LogHeader, PercentSignsStand)
{
    target.storedHeader = {.title = L"100 %d"};
    Write(nullptr);
    EXPECT_EQ(MessagesIn(LogPath()), std::vector<std::wstring>{L"100 %d"});
}

TEST_F(LogHeader, AGivenOneIsWrittenAloneAndNotStored)
{
    LogHeaderText const given = {.title = L"own", .entries = {{L"c: ", L"3"}}};
    Write(&given);
    Write(nullptr);
    EXPECT_EQ(MessagesIn(LogPath()), (std::vector<std::wstring>{L"own", L"c: 3", L"title", L"a: 1", L"b: 2", L"end"}));
}

TEST_F(LogHeader, AGivenOneToBeMergedBecomesPartOfTheStoredOne)
{
    LogHeaderText const given = {.entries = {{L"b: ", L"new"}, {L"c: ", L"3"}}, .closing = L"new end", .merge = true};
    Write(&given);
    EXPECT_EQ(MessagesIn(LogPath()), (std::vector<std::wstring>{L"title", L"a: 1", L"b: new", L"c: 3", L"new end"}));
    EXPECT_EQ(target.storedHeader.entries.size(), 3u);
}
