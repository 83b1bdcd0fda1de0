#include "tests/unit/logging/LogTargetDefaultTest.h"

using namespace test;
using namespace zant;

namespace
{

std::string const narrowMark = "\xEF\xBB\xBF";

// An open log that another program has emptied.
class EmptyLog : public LogTargetDefaultTest
{
  protected:
    // As any program does that may write to the file.
    void EmptyTheLog() const
    {
        UniqueHandle const file(CreateFileW(LogPath().c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                            nullptr, TRUNCATE_EXISTING, 0, nullptr));
        ASSERT_TRUE(file);
    }
};

} // namespace

TEST_F(EmptyLog, BeginsWithItsMark)
{
    Opened();
    EmptyTheLog();
    EXPECT_TRUE(target.WriteRaw(L"line"));
    EXPECT_EQ(ReadBytes(LogPath()), wideMark + Utf16(L"line\r\n"));
}

TEST_F(EmptyLog, InUtf8BeginsWithItsMark)
{
    target.wideOutput = false;
    Opened();
    EmptyTheLog();
    EXPECT_TRUE(target.WriteRaw("line"));
    EXPECT_EQ(ReadBytes(LogPath()), narrowMark + "line\r\n");
}

// The mark is that of the file's encoding, not of the text written.
TEST_F(EmptyLog, BeginsWithItsMarkAlsoBeforeRawNarrowText)
{
    Opened();
    EmptyTheLog();
    EXPECT_TRUE(target.WriteRaw("raw"));
    EXPECT_EQ(ReadBytes(LogPath()), wideMark + "raw\r\n");
}

TEST_F(EmptyLog, HasOneMarkHoweverManyLinesFollow)
{
    Opened();
    EmptyTheLog();
    target.WriteRaw(L"1");
    target.WriteRaw(L"2");
    EXPECT_EQ(ReadBytes(LogPath()), wideMark + Utf16(L"1\r\n2\r\n"));
}

TEST_F(EmptyLog, StaysEmptyWhileItsMarkCannotBeWritten)
{
    Opened();
    EmptyTheLog();
    {
        int skipped = 0;
        WriteFileCall const fault(FailingAfter(skipped, FALSE, ERROR_DISK_FULL));
        EXPECT_FALSE(target.WriteRaw(L"lost"));
    }
    EXPECT_EQ(ReadBytes(LogPath()), "");
    EXPECT_TRUE(target.WriteRaw(L"line"));
    EXPECT_EQ(ReadBytes(LogPath()), wideMark + Utf16(L"line\r\n"));
}

// It is not UTF-16, but cannot be set aside.
TEST_F(EmptyLog, GetsItsMarkWhenItIsOpened)
{
    WriteBytes(LogPath(), "");
    WriteBytes(folder / (Base() + L" 2024-1-5 09-30-12.log"), "taken");
    Opened();
    EXPECT_EQ(ReadBytes(LogPath()), wideMark);
}

TEST_F(EmptyLog, InUtf8GetsItsMarkWhenItIsOpened)
{
    WriteBytes(LogPath(), "");
    target.wideOutput = false;
    Opened();
    EXPECT_EQ(ReadBytes(LogPath()), narrowMark);
}

// Another process that has the file open appends to it with its old handle.
TEST_F(EmptyLog, OfARotationThatCouldNotReopenItBeginsWithItsMark)
{
    Opened();
    target.file.Reset();
    WriteLogOfSize(LogPath(), limit);
    LogTargetDefault other;
    Configure(other);
    ASSERT_TRUE(other.OpenFile(other.file));
    target.lastLine = target.lastCheck + 900;
    {
        auto emptied = false;
        CreateFileCall const fault([&](auto next, wchar_t const* path, DWORD access, DWORD share, auto* security,
                                       DWORD disposition, DWORD flags, HANDLE model) {
            if (emptied)
            {
                SetLastError(ERROR_SHARING_VIOLATION);
                return INVALID_HANDLE_VALUE;
            }
            emptied = disposition == TRUNCATE_EXISTING;
            return next(path, access, share, security, disposition, flags, model);
        });
        LogAt(target, 0, L"lost");
        EXPECT_TRUE(emptied);
    }
    EXPECT_EQ(ReadBytes(LogPath()), "");
    EXPECT_TRUE(other.WriteRaw(L"line"));
    EXPECT_EQ(ReadBytes(LogPath()), wideMark + Utf16(L"line\r\n"));
}

// One finds the file empty; before it writes the mark, the other does so and logs a line.
TEST_F(EmptyLog, HasOneMarkThoughTwoProcessesOpenItAtTheSameTime)
{
    Configure(target);
    LogTargetDefault other;
    Configure(other);
    int writes = 0;
    WriteFileCall const write(
        [&](auto next, HANDLE file, void const* bytes, DWORD size, DWORD* written, OVERLAPPED* overlapped) {
            if (writes++ == 0)
            {
                EXPECT_TRUE(other.OpenFile(other.file));
                EXPECT_TRUE(other.WriteRaw(L"line"));
            }
            return next(file, bytes, size, written, overlapped);
        });
    ASSERT_TRUE(target.OpenFile(target.file));
    EXPECT_EQ(writes, 4);
    EXPECT_EQ(ReadBytes(LogPath()), wideMark + Utf16(L"line\r\n"));
}
