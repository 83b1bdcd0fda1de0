#include "logging/LogFile.h"
#include "tests/support/ChildProcess.h"
#include "tests/unit/logging/FailingSystem.h"

using namespace test;
using namespace zant;

namespace
{

// A log whose last writer ended in the middle of a line.
class UnfinishedLine : public LogFixture
{
  protected:
    UnfinishedLine() { Configure(target); }

    // The content of the log after its mark once it has been opened.
    std::string CompletedByOpen(std::string const& text)
    {
        WriteBytes(LogPath(), wideMark + text);
        EXPECT_TRUE(target.Open());
        target.Close();
        auto const bytes = ReadBytes(LogPath());
        EXPECT_TRUE(bytes.starts_with(wideMark));
        return bytes.substr(wideMark.size());
    }

    // As a writer that is killed at that point.
    void Tear(std::string const& text) const
    {
        UniqueHandle const file(CreateFileW(LogPath().c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                            nullptr, OPEN_EXISTING, 0, nullptr));
        DWORD written = 0;
        EXPECT_TRUE(WriteFile(file.Get(), text.data(), static_cast<DWORD>(text.size()), &written, nullptr));
    }

    LogTargetDefault target;
};

} // namespace

TEST_F(UnfinishedLine, GetsItsLineEndWhenTheLogIsOpened)
{
    EXPECT_EQ(CompletedByOpen(Utf16(L"torn")), Utf16(L"torn\r\n"));
    EXPECT_EQ(CompletedByOpen(Utf16(L"torn\r")), Utf16(L"torn\r\n"));
    EXPECT_EQ(CompletedByOpen(Utf16(L"\r")), Utf16(L"\r\n"));
}

TEST_F(UnfinishedLine, GetsTheSecondHalfOfItsLastCharacterToo)
{
    auto const line = Utf16(L"torn\r\n");
    for (std::size_t size = 1; size < line.size(); size += 2)
    {
        EXPECT_EQ(CompletedByOpen(line.substr(0, size)),
                  Utf16(std::wstring(L"torn").substr(0, (size + 1) / 2)) + Utf16(L"\r\n"));
    }
}

TEST_F(UnfinishedLine, IsNotSeenInAWholeOne)
{
    EXPECT_EQ(CompletedByOpen(""), "");
    EXPECT_EQ(CompletedByOpen(Utf16(L"whole\r\n")), Utf16(L"whole\r\n"));
    EXPECT_EQ(CompletedByOpen(Utf16(L"whole\n")), Utf16(L"whole\n"));
    EXPECT_EQ(CompletedByOpen(Utf16(L"\r\n")), Utf16(L"\r\n"));
}

TEST_F(UnfinishedLine, OfUtf8GetsItsLineEnd)
{
    std::string const mark = "\xEF\xBB\xBF";
    target.wideOutput = false;
    for (std::string const text : {"", "torn\r\n", "torn", "torn\r", "odd", "o"})
    {
        WriteBytes(LogPath(), mark + text);
        EXPECT_TRUE(target.Open());
        target.Close();
        EXPECT_EQ(ReadBytes(LogPath()), mark + (text.empty() ? "" : text.substr(0, text.find('\r')) + "\r\n"));
    }
}

// It has another encoding and could not be set aside.
TEST_F(UnfinishedLine, OfAFileWithoutItsMarkStaysAsItStands)
{
    for (std::string const text : {"even", "odd", "\xFE\xFF\0t", "\xFF"})
    {
        WriteBytes(LogPath(), text);
        WriteBytes(folder / (Base() + L" 2024-1-5 09-30-12.log"), "taken");
        EXPECT_TRUE(target.Open());
        target.Close();
        EXPECT_EQ(ReadBytes(LogPath()), text);
    }
}

TEST_F(UnfinishedLine, IsCompletedByTheNextCheck)
{
    ASSERT_TRUE(target.Open());
    Tear(Utf16(L"torn") + "x");
    auto const due = target.lastLine = target.lastCheck + 900;
    LogAt(target, 0, L"next");
    EXPECT_EQ(target.lastCheck, due);
    EXPECT_EQ(MessagesIn(LogPath()), (std::vector<std::wstring>{L"tornx", L"next"}));
}

// Another line does not read the file.
TEST_F(UnfinishedLine, IsNotLookedForBetweenTheChecks)
{
    ASSERT_TRUE(target.Open());
    CreateFileCall const open([](auto...) {
        ADD_FAILURE() << "a file is opened";
        return INVALID_HANDLE_VALUE;
    });
    ReadFileCall const read([](auto...) {
        ADD_FAILURE() << "a file is read";
        return FALSE;
    });
    LogAt(target, 0, L"next");
}

TEST_F(UnfinishedLine, OfAKilledProcessIsCompletedByTheNextLine)
{
    ASSERT_TRUE(target.Open());
    auto const readyName = LogName() + L"-ready";
    UniqueHandle const ready(CreateEventW(nullptr, TRUE, FALSE, readyName.c_str()));
    ChildProcess holder(L"logging_writer.exe", L"hold " + LogName() + L" " + readyName);
    ASSERT_TRUE(holder.AwaitSignal(ready.Get()));
    Tear(Utf16(L"torn") + "x");
    holder.Kill();
    LogAt(target, 0, L"next");
    LogAt(target, 0, L"and next");
    EXPECT_EQ(MessagesIn(LogPath()), (std::vector<std::wstring>{L"tornx", L"next", L"and next"}));
}

TEST_F(UnfinishedLine, IsCompletedWhenTheLogIsReopened)
{
    ASSERT_TRUE(target.Open());
    Tear(Utf16(L"torn"));
    target.file.Reset();
    target.lastLine = target.lastCheck + 900;
    LogAt(target, 0, L"next");
    EXPECT_EQ(MessagesIn(LogPath()), (std::vector<std::wstring>{L"torn", L"next"}));
}

// The log is continued unchanged.
TEST_F(UnfinishedLine, IsCompletedThoughTheRotationFails)
{
    WriteLogOfSize(LogPath(), limit);
    Tear(Utf16(L"torn"));
    CreateFileCall const fault(
        FailingToOpen([](DWORD, DWORD, DWORD disposition) { return disposition == OPEN_ALWAYS; }));
    ASSERT_TRUE(target.Open());
    LogAt(target, 0, L"next");
    EXPECT_EQ(ReadLines(LogPath()).at(1), L"torn");
    EXPECT_EQ(MessagesIn(LogPath()).at(2), L"next");
}

TEST_F(UnfinishedLine, IsCopiedAsItIs)
{
    WriteLogOfSize(LogPath(), limit);
    Tear(Utf16(L"torn"));
    auto const bytes = ReadBytes(LogPath());
    ASSERT_TRUE(target.Open());
    EXPECT_TRUE(ReadBytes(folder / (Base() + L" 2024-1-5 09-30-12.log")) == bytes);
    EXPECT_EQ(ReadBytes(LogPath()), wideMark);
}

TEST_F(UnfinishedLine, IsNotCompletedOnceAnotherLineFollows)
{
    WriteBytes(LogPath(), wideMark + Utf16(L"torn"));
    auto const state = StateOfFile(LogPath(), true);
    ASSERT_TRUE(state);
    EXPECT_EQ(state->missing, Utf16(L"\r\n"));
    Tear(Utf16(L", other\r\n"));
    UniqueHandle file;
    std::wstring setAsidePath;
    ASSERT_TRUE(OpenLog(file, LogPath(), true, setAsidePath));
    EXPECT_TRUE(CompleteEnd(file.Get(), *state)) << "the other line has its end";
    EXPECT_EQ(ReadBytes(LogPath()), wideMark + Utf16(L"torn, other\r\n"));
}

TEST_F(UnfinishedLine, StaysWhenTheEndOfTheFileCannotBeReached)
{
    auto const torn = wideMark + Utf16(L"torn");
    WriteBytes(LogPath(), torn);
    auto const state = StateOfFile(LogPath(), true);
    ASSERT_TRUE(state);
    UniqueHandle file;
    std::wstring setAsidePath;
    ASSERT_TRUE(OpenLog(file, LogPath(), true, setAsidePath));
    {
        SetFilePointerCall const fault(Failing(FALSE, ERROR_SEEK));
        EXPECT_FALSE(CompleteEnd(file.Get(), *state));
    }
    EXPECT_EQ(ReadBytes(LogPath()), torn);
}

TEST_F(UnfinishedLine, StaysWhenItCannotBeRead)
{
    ASSERT_TRUE(target.Open());
    Tear(Utf16(L"torn"));
    auto const due = target.lastLine = target.lastCheck + 900;
    {
        ReadFileCall const fault(Failing(FALSE, ERROR_CRC));
        LogAt(target, 0, L"next");
    }
    EXPECT_EQ(target.lastCheck, due) << "the check passes all the same";
    EXPECT_EQ(ReadLines(LogPath()).size(), 1u);
}

// The file has become shorter meanwhile.
TEST_F(UnfinishedLine, StaysWhenItIsReadInPart)
{
    WriteBytes(LogPath(), wideMark + Utf16(L"torn"));
    int reads = 0;
    ReadFileCall const shorter([&](auto next, HANDLE file, void* bytes, DWORD size, DWORD* read, OVERLAPPED* o) {
        return next(file, bytes, reads++ == 0 ? size : size - 1, read, o);
    });
    auto const state = StateOfFile(LogPath(), true);
    ASSERT_TRUE(state);
    EXPECT_EQ(reads, 2);
    EXPECT_EQ(state->missing, "");
}

// Another process, which does not know of it, may write the next line.
TEST_F(UnfinishedLine, IsTakenBackWhenItsEndCannotBeWritten)
{
    ASSERT_TRUE(target.Open());
    Tear(Utf16(L"whole\r\n\x0A00\u0100torn") + "h"); // a line end between two characters is none
    auto const due = target.lastLine = target.lastCheck + 900;
    int skipped = 0;
    WriteFileCall const fault(FailingAfter(skipped, FALSE, ERROR_DISK_FULL));
    LogAt(target, 0, L"next");
    EXPECT_TRUE(ReadBytes(LogPath()).starts_with(wideMark + Utf16(L"whole\r\n")));
    EXPECT_EQ(ReadLines(LogPath()).size(), 2u); // "whole" and "next"
    EXPECT_EQ(target.lastCheck, due);
}

TEST_F(UnfinishedLine, IsTakenBackWhenItIsTheFirstOne)
{
    WriteBytes(LogPath(), wideMark + Utf16(L"torn"));
    WriteFileCall const fault(Failing(FALSE, ERROR_DISK_FULL));
    EXPECT_TRUE(target.Open());
    EXPECT_EQ(ReadBytes(LogPath()), wideMark);
}

TEST_F(UnfinishedLine, OfUtf8IsTakenBackToo)
{
    target.wideOutput = false;
    WriteBytes(LogPath(), "\xEF\xBB\xBFwhole\r\ntorn");
    WriteFileCall const fault(Failing(FALSE, ERROR_DISK_FULL));
    EXPECT_TRUE(target.Open());
    EXPECT_EQ(ReadBytes(LogPath()), "\xEF\xBB\xBFwhole\r\n");
}

TEST_F(UnfinishedLine, IsTakenBackUpTo4096Bytes)
{
    auto const whole = wideMark + Utf16(L"whole\r\n");
    for (auto const& [size, isTakenBack] : {std::pair(4094, true), std::pair(4096, false)})
    {
        WriteBytes(LogPath(), whole + std::string(static_cast<std::size_t>(size), 'a'));
        {
            WriteFileCall const fault(Failing(FALSE, ERROR_DISK_FULL));
            EXPECT_TRUE(target.Open());
        }
        target.Close();
        EXPECT_EQ(ReadBytes(LogPath()).size(), whole.size() + (isTakenBack ? 0u : static_cast<std::size_t>(size)));
    }
}

TEST_F(UnfinishedLine, StaysWhenItCanNeitherBeCompletedNorTakenBack)
{
    ASSERT_TRUE(target.Open());
    Tear(Utf16(L"torn"));
    target.lastLine = target.lastCheck + 900;
    int skipped = 0;
    WriteFileCall const fault(FailingAfter(skipped, FALSE, ERROR_DISK_FULL));
    SetEndOfFileCall const stays(Failing(FALSE, ERROR_ACCESS_DENIED));
    LogAt(target, 0, L"next");
    EXPECT_EQ(target.lastCheck, 0) << "the next line checks again";
    EXPECT_EQ(ReadLines(LogPath()).size(), 1u);
}

// As on a full disk: the next line, for which there is room again, does not continue it.
TEST_F(UnfinishedLine, IsTakenBackOnlyWhenEachCallForItSucceeds)
{
    ASSERT_TRUE(target.Open());
    auto const whole = ReadBytes(LogPath());
    Tear(Utf16(L"torn"));
    auto const torn = ReadBytes(LogPath());
    auto const isTakenBack = [this] { return TakeBackLastLine(target.file.Get(), LogPath(), true); };
    {
        CreateFileCall const fault(Failing(INVALID_HANDLE_VALUE, ERROR_SHARING_VIOLATION));
        EXPECT_FALSE(isTakenBack());
    }
    {
        GetFileSizeCall const fault(Failing(FALSE, ERROR_CRC));
        EXPECT_FALSE(isTakenBack());
    }
    {
        ReadFileCall const fault(Failing(FALSE, ERROR_CRC));
        EXPECT_FALSE(isTakenBack());
    }
    for (int const seek : {0, 1}) // before it is read, before it is cut off
    {
        int skipped = seek;
        SetFilePointerCall const fault(FailingAfter(skipped, FALSE, ERROR_SEEK));
        EXPECT_FALSE(isTakenBack()) << seek;
    }
    EXPECT_EQ(ReadBytes(LogPath()), torn);
    EXPECT_TRUE(isTakenBack());
    EXPECT_EQ(ReadBytes(LogPath()), whole);
}

TEST_F(UnfinishedLine, IsCompletedBeforeTheNextLineWhenItCouldNotBeBefore)
{
    WriteBytes(LogPath(), wideMark + Utf16(L"torn") + "h");
    {
        WriteFileCall const fault(Failing(FALSE, ERROR_DISK_FULL));
        SetEndOfFileCall const stays(Failing(FALSE, ERROR_ACCESS_DENIED));
        EXPECT_TRUE(target.Open());
    }
    LogAt(target, 0, L"after");
    EXPECT_EQ(MessagesIn(LogPath()), (std::vector<std::wstring>{L"tornh", L"after"}));
    auto checks = 0;
    CreateFileCall const counting(Counting(checks));
    LogAt(target, 0, L"last");
    EXPECT_EQ(checks, 0); // once is enough
}

TEST_F(UnfinishedLine, OfAKilledProcessIsCompletedByALaterLineWhenTheNextOneCannotDoSo)
{
    ASSERT_TRUE(target.Open());
    Tear(Utf16(L"torn"));
    {
        WaitCall const abandoned([](auto next, auto... arguments) {
            return next(arguments...) == WAIT_OBJECT_0 ? DWORD{WAIT_ABANDONED} : DWORD{WAIT_FAILED};
        });
        WriteFileCall const fault(Failing(FALSE, ERROR_DISK_FULL));
        SetEndOfFileCall const stays(Failing(FALSE, ERROR_ACCESS_DENIED));
        EXPECT_TRUE(LogAt(target, 0, L"lost"));
    }
    LogAt(target, 0, L"after");
    EXPECT_EQ(MessagesIn(LogPath()), (std::vector<std::wstring>{L"torn", L"after"}));
}
