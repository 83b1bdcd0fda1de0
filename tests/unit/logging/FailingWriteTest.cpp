#include "tests/unit/logging/FailingSystem.h"

using namespace test;
using namespace zant;

using FailingWrite = FailingSystem;

TEST_F(FailingWrite, ALineIsLostWhenTheEndOfTheFileCannotBeFound)
{
    ASSERT_TRUE(target.Open());
    {
        SetFilePointerCall const fault(Failing(FALSE, ERROR_INVALID_HANDLE));
        EXPECT_TRUE(LogAt(target, 0, L"lost"));
    }
    LogAt(target, 0, L"after");
    EXPECT_EQ(MessagesIn(LogPath()), std::vector<std::wstring>{L"after"});
}

TEST_F(FailingWrite, ALineIsLostWhenTheDiskIsFull)
{
    ASSERT_TRUE(target.Open());
    {
        WriteFileCall const fault(Failing(FALSE, ERROR_DISK_FULL));
        EXPECT_TRUE(LogAt(target, 0, L"lost"));
        EXPECT_FALSE(target.WriteRaw(L"lost"));
        EXPECT_FALSE(target.WriteRaw("lost"));
    }
    LogAt(target, 0, L"after");
    EXPECT_EQ(MessagesIn(LogPath()), std::vector<std::wstring>{L"after"});
}

// The line end is written nevertheless, so that the next line begins on its own; its result is that of the operation.
TEST_F(FailingWrite, ATextThatCannotBeWrittenLeavesItsLineEnd)
{
    ASSERT_TRUE(target.Open());
    int skipped = 0;
    WriteFileCall const fault(FailingAfter(skipped, FALSE, ERROR_DISK_FULL));
    EXPECT_TRUE(target.WriteRaw(L"lost"));
    EXPECT_EQ(ReadBytes(LogPath()), wideMark + Utf16(L"\r\n"));
}

TEST_F(FailingWrite, ALineEndThatCannotBeWrittenIsReported)
{
    ASSERT_TRUE(target.Open());
    int skipped = 1;
    WriteFileCall const fault(FailingAfter(skipped, FALSE, ERROR_DISK_FULL));
    EXPECT_FALSE(target.WriteRaw(L"text"));
    EXPECT_EQ(ReadBytes(LogPath()), wideMark + Utf16(L"text"));
}

TEST_F(FailingWrite, WithoutAFileLinesAreLost)
{
    ASSERT_TRUE(target.Open());
    target.file.Reset();
    EXPECT_TRUE(LogAt(target, 0, L"lost"));
    EXPECT_TRUE(target.useLock);
}

TEST_F(FailingWrite, ALineInUtf8IsLostWhenItCannotBeConverted)
{
    target.wideOutput = false;
    ASSERT_TRUE(target.Open());
    WideCharToMultiByteCall const fault(Failing(0, ERROR_INSUFFICIENT_BUFFER));
    EXPECT_TRUE(LogAt(target, 0, L"lost"));
    EXPECT_EQ(ReadBytes(LogPath()), "\xEF\xBB\xBF");
}
