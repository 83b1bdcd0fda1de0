#include "tests/support/ShortMemory.h"

#include "tests/unit/logging/LogFixture.h"

using namespace test;
using namespace zant;

namespace
{

class ShortMemoryTest : public LogFixture
{
};

} // namespace

TEST_F(ShortMemoryTest, LosesTheLineAndFreesTheMutex)
{
    LogTargetDefault target;
    Configure(target);
    ASSERT_TRUE(target.Open());
    std::wstring const text(100'000, L'x');
    {
        ShortMemory const none;
        target.Log(LogLevel::Info, L"", L"", L"", L"", L"", L"", text.c_str(), nullptr, 0, true);
    }
    LogTargetDefault other;
    Configure(other);
    ASSERT_TRUE(other.Open());
    EXPECT_TRUE(other.useLock);
    LogAt(target, 0, L"after");
    EXPECT_EQ(MessagesIn(LogPath()), std::vector<std::wstring>{L"after"});
}

TEST_F(ShortMemoryTest, LosesANarrowLine)
{
    LogTargetDefault target;
    Configure(target);
    ASSERT_TRUE(target.Open());
    std::string const text(100'000, 'x');
    {
        ShortMemory const none;
        target.Log(LogLevel::Info, L"", L"", L"", L"", "", "", text.c_str(), nullptr, 0, true);
    }
    EXPECT_EQ(ReadBytes(LogPath()), wideMark);
}

TEST_F(ShortMemoryTest, LeavesNoHeaderPendingThatCouldNotBeMerged)
{
    LogTargetDefault target;
    Configure(target);
    ASSERT_TRUE(target.Open());
    target.headerPending = true;
    LogHeaderText header;
    header.merge = true;
    header.title = std::wstring(1'000, L'x');
    {
        ShortMemory const none;
        EXPECT_THROW(target.LogHeader(LogLevel::Info, L"", L"", L"", L"", &header, true), std::bad_alloc);
    }
    EXPECT_FALSE(target.headerPending);
    EXPECT_EQ(ReadBytes(LogPath()), wideMark);
}

TEST_F(ShortMemoryTest, LeavesALogClosedWhoseRotationAtOpeningItEnds)
{
    auto ended = 0;
    for (auto turn = 0;; ++turn)
    {
        WriteLogOfSize(LogPath(), limit);
        LogTargetDefault target;
        Configure(target);
        ShortMoment const moment(turn);
        try
        {
            EXPECT_EQ(target.Open(), target.isOpen) << turn;
        }
        catch (std::bad_alloc const&)
        {
            EXPECT_FALSE(target.isOpen) << turn;
            ++ended;
        }
        if (!moment.HasPassed())
        {
            break;
        }
    }
    EXPECT_GT(ended, 3);
}
