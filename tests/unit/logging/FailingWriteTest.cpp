#include "logging/LogFile.h"
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

// A line end alone would be a line, too. The result is that of the line end's writing.
TEST_F(FailingWrite, ATextThatCannotBeWrittenLeavesNothing)
{
    ASSERT_TRUE(target.Open());
    int skipped = 0;
    WriteFileCall const fault(FailingAfter(skipped, FALSE, ERROR_DISK_FULL));
    EXPECT_TRUE(target.WriteRaw(L"lost"));
    EXPECT_EQ(ReadBytes(LogPath()), wideMark);
}

TEST_F(FailingWrite, ALineEndThatCannotBeWrittenTakesItsTextBack)
{
    ASSERT_TRUE(target.Open());
    LogAt(target, 0, L"before");
    auto const before = ReadBytes(LogPath());
    int skipped = 1;
    WriteFileCall const fault(FailingAfter(skipped, FALSE, ERROR_DISK_FULL));
    EXPECT_FALSE(target.WriteRaw(L"text"));
    EXPECT_EQ(ReadBytes(LogPath()), before);
}

// The next line, which may be another process's, begins on its own, and with a whole character.
TEST_F(FailingWrite, ALineOfWhichAPartFitsOnTheDiskIsTakenBack)
{
    ASSERT_TRUE(target.Open());
    LogAt(target, 0, L"before");
    auto const before = ReadBytes(LogPath());
    for (DWORD fitting = 0; fitting < 40; ++fitting)
    {
        auto room = fitting;
        WriteFileCall const fault([&](auto next, HANDLE file, void const* bytes, DWORD size, auto... rest) {
            size = std::min(size, room);
            room -= size;
            return next(file, bytes, size, rest...);
        });
        EXPECT_TRUE(LogAt(target, 0, L"lost"));
        ASSERT_EQ(ReadBytes(LogPath()), before) << fitting;
    }
}

// Where even that fails, it is as after a killed process.
TEST_F(FailingWrite, ALineThatCannotBeTakenBackIsCompletedByTheNextCheck)
{
    ASSERT_TRUE(target.Open());
    {
        int skipped = 1;
        WriteFileCall const fault(FailingAfter(skipped, FALSE, ERROR_DISK_FULL));
        SetEndOfFileCall const stays(Failing(FALSE, ERROR_DISK_FULL));
        EXPECT_FALSE(target.WriteRaw(L"text"));
    }
    target.lastCheck = 0;
    LogAt(target, 0, L"after");
    EXPECT_EQ(MessagesIn(LogPath()), (std::vector<std::wstring>{L"text", L"after"}));
}

// A mark cut in half would shift all that follows by a byte.
TEST_F(FailingWrite, ALineIsLostWhenAPartOfItsMarkFits)
{
    ASSERT_TRUE(target.Open());
    EmptyFile(LogPath());
    {
        DWORD room = 1;
        WriteFileCall const fault([&](auto next, HANDLE file, void const* bytes, DWORD size, auto... rest) {
            size = std::min(size, room);
            room -= size;
            return next(file, bytes, size, rest...);
        });
        EXPECT_TRUE(LogAt(target, 0, L"lost"));
    }
    EXPECT_EQ(ReadBytes(LogPath()), "");
    LogAt(target, 0, L"after");
    EXPECT_EQ(MessagesIn(LogPath()), std::vector<std::wstring>{L"after"});
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
