#include "tests/unit/logging/LogTargetDefaultTest.h"

using namespace test;
using namespace zant;

TEST_F(LogTargetDefaultTest, StartsClosedAndOpensNothing)
{
    EXPECT_EQ(target.group, L"ZEB");
    EXPECT_EQ(target.separator, L" | ");
    EXPECT_EQ(target.fileName, L"ZANT.log");
    EXPECT_EQ(target.filePath, L"");
    EXPECT_EQ(target.threshold, LogLevel::Info);
    EXPECT_FALSE(target.file);
    EXPECT_TRUE(target.enabled);
    EXPECT_FALSE(target.isOpen);
    EXPECT_EQ(target.refCount, 0u);
    EXPECT_TRUE(target.wideOutput);
    EXPECT_EQ(target.lock, nullptr);
    EXPECT_FALSE(target.headerPending);
    EXPECT_TRUE(target.useLock);
    EXPECT_EQ(target.setAsidePath, L"");
    EXPECT_TRUE(NamesIn(temporary.Path()).empty());
}

TEST_F(LogTargetDefaultTest, ChoosesItsLevelWhenConstructed)
{
    WriteBytes(temporary / L"pvq.debug", "");
    EXPECT_EQ(LogTargetDefault().threshold, LogLevel::Debug);
}

TEST_F(LogTargetDefaultTest, RefusesToOpenWhenDisabled)
{
    Configure(target);
    target.enabled = false;
    EXPECT_FALSE(target.Open());
    EXPECT_FALSE(target.isOpen);
    EXPECT_FALSE(FileExists(LogPath()));
}

TEST_F(LogTargetDefaultTest, OpensItsFileNameInTheTemporaryFolderWithoutAPath)
{
    target.fileName = LogName();
    EXPECT_TRUE(target.Open());
    EXPECT_EQ(target.filePath, temporary / LogName());
    EXPECT_EQ(ReadBytes(target.filePath), wideMark);
}

TEST_F(LogTargetDefaultTest, CreatesAMissingTemporaryFolder)
{
    auto const deep = temporary / L"a\\b";
    SetEnvironmentVariableW(L"TMP", deep.c_str());
    target.fileName = LogName();
    EXPECT_TRUE(target.Open());
    EXPECT_EQ(ReadBytes(deep + L"\\" + LogName()), wideMark);
}

TEST_F(LogTargetDefaultTest, ANewFileBeginsWithTheMarkOfUtf16)
{
    Opened();
    EXPECT_EQ(ReadBytes(LogPath()), wideMark);
}

TEST_F(LogTargetDefaultTest, ANewFileInUtf8BeginsWithItsMark)
{
    target.wideOutput = false;
    Opened();
    EXPECT_EQ(ReadBytes(LogPath()), "\xEF\xBB\xBF");
}

TEST_F(LogTargetDefaultTest, AnExistingFileIsAppendedTo)
{
    WriteBytes(LogPath(), wideMark + Utf16(L"before\r\n"));
    LogWide(Opened(), LogLevel::Info, L"after");
    EXPECT_EQ(MessagesIn(LogPath()), (std::vector<std::wstring>{L"before", L"after"}));
}

TEST_F(LogTargetDefaultTest, AFileOfTheOtherByteOrderIsAppendedToAsItStands)
{
    WriteBytes(LogPath(), "\xFE\xFF");
    Opened();
    EXPECT_EQ(ReadBytes(LogPath()), "\xFE\xFF");
}

TEST_F(LogTargetDefaultTest, CloseClosesFileAndMutex)
{
    Opened();
    EXPECT_TRUE(target.Close());
    EXPECT_FALSE(target.file);
    EXPECT_EQ(target.lock, nullptr);
    EXPECT_FALSE(target.isOpen);
    EXPECT_TRUE(target.Close());
}

TEST_F(LogTargetDefaultTest, CanBeOpenedAgainAfterClose)
{
    Opened().Close();
    EXPECT_TRUE(target.Open());
    LogWide(target, LogLevel::Info, L"again");
    EXPECT_EQ(MessagesIn(LogPath()), std::vector<std::wstring>{L"again"});
}

TEST_F(LogTargetDefaultTest, TheMutexIsNamedExactlyAsTheFile)
{
    Opened();
    auto const mutex = OpenMutexW(SYNCHRONIZE, FALSE, LogName().c_str());
    EXPECT_NE(mutex, nullptr);
    CloseHandle(mutex);
}
