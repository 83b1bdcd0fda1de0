#include "tests/unit/logging/FailingSystem.h"

using namespace test;
using namespace zant;

using FailingRotation = FailingSystem;

TEST_F(FailingRotation, AFileWhoseSizeIsUnknownIsNotRotated)
{
    OpenAtTheLimit();
    GetFileSizeCall const fault(Failing(FALSE, ERROR_IO_DEVICE));
    LogUpToARotation();
    EXPECT_TRUE(Copies().empty());
    EXPECT_FALSE(target.headerPending);
}

namespace
{

// The copying fails: the log is continued unchanged, with the header pending.
class FailingRotationCopy : public FailingSystem
{
  protected:
    FailingRotationCopy()
    {
        target.storedHeader.title = L"header";
        OpenAtTheLimit();
    }

    void ExpectTheLogToGoOn()
    {
        auto const handlesBefore = handles.Open();
        LogUpToARotation();
        EXPECT_EQ(handles.Open(), handlesBefore);
        auto const lines = ReadLines(LogPath());
        ASSERT_GE(lines.size(), 5u);
        auto const last = lines.end();
        EXPECT_TRUE((last - 4)->ends_with(L" | 1"));
        EXPECT_TRUE((last - 3)->ends_with(L" | 2"));
        EXPECT_TRUE((last - 2)->ends_with(L" | header"));
        EXPECT_TRUE((last - 1)->ends_with(L" | 3"));
    }
};

} // namespace

TEST_F(FailingRotationCopy, ByTheOpeningOfTheSource)
{
    CreateFileCall const fault(
        FailingToOpen([](DWORD access, DWORD, DWORD) { return access == (GENERIC_READ | GENERIC_WRITE); }));
    ExpectTheLogToGoOn();
    EXPECT_TRUE(Copies().empty());
}

TEST_F(FailingRotationCopy, ByTheOpeningOfTheDestination)
{
    CreateFileCall const fault(
        FailingToOpen([](DWORD, DWORD, DWORD disposition) { return disposition == OPEN_ALWAYS; }));
    ExpectTheLogToGoOn();
    EXPECT_TRUE(Copies().empty());
}

namespace
{

ReadFileCall::Function FailingInTheMiddle()
{
    return [](auto next, HANDLE file, void* buffer, DWORD size, DWORD* read, OVERLAPPED* overlapped) {
        LARGE_INTEGER position = {};
        SetFilePointerCall::Original(file, {}, &position, FILE_CURRENT);
        if (position.QuadPart >= static_cast<LONGLONG>(limit / 2))
        {
            SetLastError(ERROR_CRC);
            return FALSE;
        }
        return next(file, buffer, size, read, overlapped);
    };
}

} // namespace

TEST_F(FailingRotationCopy, ByAReadInItsMiddleLeavesNoPartOfIt)
{
    ReadFileCall const fault(FailingInTheMiddle());
    ExpectTheLogToGoOn();
    EXPECT_TRUE(Copies().empty());
}

TEST_F(FailingRotationCopy, ByAReadInItsMiddleLeavesNoPartOfItThoughNothingIsDeletedOnClose)
{
    ReadFileCall const fault(FailingInTheMiddle());
    SetFileInformationCall const unknown(Failing(FALSE, ERROR_INVALID_PARAMETER));
    ExpectTheLogToGoOn();
    EXPECT_TRUE(Copies().empty());
}

// The copy would be deleted when closed, so the log may not be emptied.
TEST_F(FailingRotationCopy, ByADeletionThatCannotBeTakenBack)
{
    int skipped = 1;
    SetFileInformationCall const fault(FailingAfter(skipped, FALSE, ERROR_INVALID_FUNCTION));
    ExpectTheLogToGoOn();
    EXPECT_TRUE(Copies().empty());
}

TEST_F(FailingRotationCopy, ByANameThatCannotBeMade)
{
    GetDateFormatCall const noDate(Failing(0, ERROR_INVALID_PARAMETER));
    GetTimeFormatCall const noTime(Failing(0, ERROR_INVALID_PARAMETER));
    ExpectTheLogToGoOn();
    EXPECT_TRUE(Copies().empty());
}

// Only reads decide whether a copy has succeeded.
TEST_F(FailingRotation, ACopyThatCannotBeWrittenCountsAsMade)
{
    OpenAtTheLimit();
    {
        WriteFileCall const fault(
            [](auto next, HANDLE file, void const* bytes, DWORD size, DWORD* written, OVERLAPPED* o) {
                if (size == 4'096)
                {
                    SetLastError(ERROR_DISK_FULL);
                    return FALSE;
                }
                return next(file, bytes, size, written, o);
            });
        LogUpToARotation();
    }
    EXPECT_EQ(MessagesIn(LogPath()), std::vector<std::wstring>{L"3"});
}

TEST_F(FailingRotation, AFileThatCannotBeEmptiedIsWrittenOn)
{
    OpenAtTheLimit();
    CreateFileCall const fault(
        FailingToOpen([](DWORD, DWORD, DWORD disposition) { return disposition == TRUNCATE_EXISTING; }));
    LogUpToARotation();
    EXPECT_EQ(Copies().size(), 1u);
    auto const lines = ReadLines(LogPath());
    EXPECT_TRUE((lines.end() - 2)->ends_with(L" | 2"));
    EXPECT_TRUE((lines.end() - 1)->ends_with(L" | 3"));
}

namespace
{

bool ReopeningTheLog(DWORD access, DWORD, DWORD disposition)
{
    return (access == GENERIC_WRITE && disposition == OPEN_EXISTING) || disposition == CREATE_NEW;
}

// Clean-up follows each rotation, also a failed one.
class FailingRotationCleanUp : public FailingSystem
{
  protected:
    FailingRotationCleanUp() { WriteBytes(oldCopy, ""); }

    std::wstring const oldCopy = folder / (Base() + L" 2001-1-1 01-01-01.log");
};

} // namespace

TEST_F(FailingRotationCleanUp, IsDoneThoughTheCopyFailed)
{
    OpenAtTheLimit();
    CreateFileCall const fault(
        FailingToOpen([](DWORD, DWORD, DWORD disposition) { return disposition == OPEN_ALWAYS; }));
    LogUpToARotation();
    EXPECT_TRUE(Copies().empty()); // neither the old one nor a new one
}

TEST_F(FailingRotationCleanUp, IsDoneThoughTheFileCannotBeReopened)
{
    OpenAtTheLimit();
    CreateFileCall const fault(FailingToOpen(ReopeningTheLog));
    LogUpToARotation();
    EXPECT_FALSE(target.file);
    EXPECT_FALSE(FileExists(oldCopy));
}

namespace
{

// The rotation empties the log, which then cannot be opened for a while.
class FailingRotationReopening : public FailingSystem
{
  protected:
    void RotateWithoutReopening()
    {
        OpenAtTheLimit();
        CreateFileCall const fault(FailingToOpen(ReopeningTheLog));
        LogUpToARotation();
        EXPECT_FALSE(target.file);
    }

    void OpenWithoutReopening()
    {
        WriteLogOfSize(LogPath(), limit);
        auto emptied = false;
        CreateFileCall const fault(FailingToOpen([&](DWORD access, DWORD share, DWORD disposition) {
            emptied |= disposition == TRUNCATE_EXISTING;
            return emptied && ReopeningTheLog(access, share, disposition);
        }));
        EXPECT_TRUE(target.Open());
        EXPECT_TRUE(emptied);
        EXPECT_FALSE(target.file);
    }
};

} // namespace

TEST_F(FailingRotationReopening, LosesLinesUntilTheNextCheckOpensTheLog)
{
    RotateWithoutReopening();
    auto const due = target.lastLine;
    EXPECT_EQ(due - target.lastCheck, 900);
    LogAt(target, 0, L"again");
    EXPECT_TRUE(target.file);
    EXPECT_EQ(target.lastCheck, due);
    EXPECT_EQ(MessagesIn(LogPath()), std::vector<std::wstring>{L"again"});
}

TEST_F(FailingRotationReopening, IsTriedByEachLine)
{
    RotateWithoutReopening();
    auto const due = static_cast<std::uint64_t>(target.lastLine) * 1'000;
    int openings = 0;
    {
        CreateFileCall const fault([&](auto next, wchar_t const* path, DWORD access, DWORD share, auto* security,
                                       DWORD disposition, DWORD flags, HANDLE model) {
            if (!ReopeningTheLog(access, share, disposition))
            {
                return next(path, access, share, security, disposition, flags, model);
            }
            openings += disposition == OPEN_EXISTING ? 1 : 0;
            SetLastError(ERROR_SHARING_VIOLATION);
            return INVALID_HANDLE_VALUE;
        });
        LogAt(target, due, L"lost");
        LogAt(target, due, L"lost");
    }
    EXPECT_EQ(openings, 2);
    LogAt(target, due, L"again");
    LogAt(target, due, L"and again");
    EXPECT_EQ(MessagesIn(LogPath()), (std::vector<std::wstring>{L"again", L"and again"}));
}

// The target is open nevertheless: its result does not depend on the check.
TEST_F(FailingRotationReopening, AtOpenIsRepeatedByTheFirstLine)
{
    OpenWithoutReopening();
    EXPECT_TRUE(target.isOpen);
    EXPECT_TRUE(target.useLock);
    auto const opened = target.lastLine;
    LogAt(target, 0, L"first");
    LogAt(target, 0, L"second");
    EXPECT_EQ(MessagesIn(LogPath()), (std::vector<std::wstring>{L"first", L"second"}));
    EXPECT_EQ(target.lastCheck, opened);
}

TEST_F(FailingRotationReopening, AtOpenIsRepeatedByAnotherOpen)
{
    OpenWithoutReopening();
    EXPECT_TRUE(target.Open());
    EXPECT_TRUE(target.file);
}

// Its size cannot be read then; the opening, which creates it, is the check's result.
TEST_F(FailingRotationReopening, CreatesALogThatIsGone)
{
    ASSERT_TRUE(target.Open());
    target.file.Reset();
    ASSERT_TRUE(DeleteFileW(LogPath().c_str()));
    auto const due = target.lastLine = target.lastCheck + 900;
    LogAt(target, 0, L"again");
    EXPECT_EQ(target.lastCheck, due);
    EXPECT_TRUE(ReadBytes(LogPath()).starts_with(wideMark));
    EXPECT_EQ(MessagesIn(LogPath()), std::vector<std::wstring>{L"again"});
}

TEST_F(FailingRotationCleanUp, LeavesOldCopiesThatCannotBeListedOrDeleted)
{
    OpenAtTheLimit();
    {
        FindFirstFileCall const fault(Failing(INVALID_HANDLE_VALUE, ERROR_ACCESS_DENIED));
        LogUpToARotation();
        EXPECT_TRUE(FileExists(oldCopy));
    }
    target.file.Reset();
    WriteLogOfSize(LogPath(), limit);
    {
        DeleteFileCall const fault(Failing(FALSE, ERROR_ACCESS_DENIED));
        EXPECT_TRUE(target.Open());
    }
    EXPECT_TRUE(FileExists(oldCopy));
}
