#include "tests/unit/logging/HandleLedger.h"
#include "tests/unit/logging/LogFixture.h"

#include <optional>

using namespace test;
using namespace zant;

namespace
{

class FailingSystem : public LogFixture
{
  protected:
    FailingSystem() { Configure(target); }

    // Logs two lines, the second 900 seconds later, and a third one, which finds the file at its limit.
    void LogUpToARotation()
    {
        auto const later = (static_cast<std::uint64_t>(target.lastCheck) + 900) * 1'000;
        LogAt(target, 0, L"1");
        LogAt(target, later, L"2");
        LogAt(target, later, L"3");
    }

    void OpenAtTheLimit()
    {
        EXPECT_TRUE(target.Open());
        target.file.Reset();
        WriteLogOfSize(LogPath(), limit);
        EXPECT_TRUE(target.OpenFile(target.file));
    }

    std::vector<std::wstring> Copies() const
    {
        auto names = NamesIn(folder.Path());
        std::erase_if(names, [this](auto const& name) { return !name.starts_with(Base() + L" "); });
        return names;
    }

    HandleLedger const handles;
    LogTargetDefault target;
};

// Fails the opening of files that are opened in a certain way.
template <typename Predicate>
auto FailingToOpen(Predicate fails)
{
    return [=](auto next, wchar_t const* path, DWORD access, DWORD share, SECURITY_ATTRIBUTES* security,
               DWORD disposition, DWORD flags, HANDLE model) {
        if (fails(access, share, disposition))
        {
            SetLastError(ERROR_ACCESS_DENIED);
            return INVALID_HANDLE_VALUE;
        }
        return next(path, access, share, security, disposition, flags, model);
    };
}

bool ReopeningTheLog(DWORD access, DWORD, DWORD disposition)
{
    return (access == GENERIC_WRITE && disposition == OPEN_EXISTING) || disposition == CREATE_NEW;
}

} // namespace

// --- opening ---

TEST_F(FailingSystem, OpenFailsWithoutATemporaryFolder)
{
    GetTempPathCall const fault(Failing(DWORD{0}, ERROR_NOT_ENOUGH_MEMORY));
    target.filePath.clear();
    EXPECT_FALSE(target.Open());
    EXPECT_FALSE(target.isOpen);
}

TEST_F(FailingSystem, OpenFailsWhenTheTemporaryFolderCannotBeMade)
{
    CreateDirectoryCall const fault(Failing(FALSE, ERROR_ACCESS_DENIED));
    target.filePath.clear();
    EXPECT_FALSE(target.Open());
}

TEST_F(FailingSystem, ATemporaryFolderThatIsThereAlreadyWillDo)
{
    for (auto const error : {DWORD{ERROR_ALREADY_EXISTS}, DWORD{ERROR_FILE_EXISTS}})
    {
        CreateDirectoryCall const fault(Failing(FALSE, error));
        LogTargetDefault other;
        other.fileName = LogName();
        EXPECT_TRUE(other.Open());
    }
}

TEST_F(FailingSystem, OpenFailsWhenTheFileCanNeitherBeOpenedNorCreated)
{
    CreateFileCall const fault(Failing(INVALID_HANDLE_VALUE, ERROR_ACCESS_DENIED));
    EXPECT_FALSE(target.Open());
    EXPECT_FALSE(target.isOpen);
    EXPECT_FALSE(target.file);
    EXPECT_EQ(handles.Open(), 0u);
}

TEST_F(FailingSystem, AFileWhoseMarkCannotBeWrittenIsOpenAllTheSame)
{
    {
        WriteFileCall const fault(Failing(FALSE, ERROR_DISK_FULL));
        EXPECT_TRUE(target.Open());
    }
    EXPECT_EQ(ReadBytes(LogPath()), "");
    LogAt(target, 0, L"m");
    EXPECT_EQ(MessagesIn(LogPath()), std::vector<std::wstring>{L"m"});
}

TEST_F(FailingSystem, AFileThatCannotBeReadCountsAsUtf16)
{
    WriteBytes(LogPath(), "plain");
    {
        ReadFileCall const fault(Failing(FALSE, ERROR_CRC));
        EXPECT_TRUE(target.OpenFile(target.file));
    }
    EXPECT_EQ(ReadBytes(LogPath()), "plain");
    EXPECT_TRUE(Copies().empty());
}

TEST_F(FailingSystem, AFileThatCannotBeMovedIsAppendedToAsItStands)
{
    WriteBytes(LogPath(), "plain.");
    MoveFileCall const fault(Failing(FALSE, ERROR_SHARING_VIOLATION));
    EXPECT_TRUE(target.Open());
    EXPECT_EQ(target.setAsidePath, L"");
    LogAt(target, 0, L"m");
    auto const bytes = ReadBytes(LogPath());
    EXPECT_TRUE(bytes.starts_with("plain."));
    EXPECT_TRUE(bytes.ends_with(Utf16(L" | m\r\n")));
}

TEST_F(FailingSystem, AFileIsNotMovedToANameWithoutDateOrTime)
{
    WriteBytes(LogPath(), "plain");
    {
        GetDateFormatCall const fault(Failing(0, ERROR_INVALID_PARAMETER));
        EXPECT_TRUE(target.OpenFile(target.file));
    }
    {
        GetTimeFormatCall const fault(Failing(0, ERROR_INVALID_PARAMETER));
        EXPECT_TRUE(target.OpenFile(target.file));
    }
    EXPECT_EQ(ReadBytes(LogPath()), "plain");
}

// Under Wine a user with all rights (the one of most containers) may write to such a file; Windows refuses.
TEST_F(FailingSystem, AReadOnlyFileCannotBeOpened)
{
    WriteBytes(LogPath(), wideMark);
    CreateFileCall const fault(FailingToOpen([](DWORD access, DWORD, DWORD) { return (access & GENERIC_WRITE) != 0; }));
    EXPECT_FALSE(target.Open());
    EXPECT_FALSE(target.isOpen);
}

TEST_F(FailingSystem, AFileThatAnotherHoldsWithoutSharingCannotBeOpened)
{
    UniqueHandle const other(
        CreateFileW(LogPath().c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr));
    EXPECT_FALSE(target.Open());
    EXPECT_EQ(handles.Open(), 1u);
}

TEST_F(FailingSystem, AFolderThatIsAFileLeavesNoLog)
{
    WriteBytes(folder / L"file", "");
    target.filePath = folder / L"file\\" + LogName();
    EXPECT_FALSE(target.Open());
}

TEST_F(FailingSystem, AFolderInTheFilesPlaceLeavesNoLog)
{
    CreateDirectoryW(LogPath().c_str(), nullptr);
    EXPECT_FALSE(target.Open());
    EXPECT_EQ(handles.Open(), 0u);
}

// --- the mutex ---

TEST_F(FailingSystem, WithoutAMutexTheTargetOpensButWritesNothing)
{
    CreateMutexCall const fault(Failing(HANDLE(nullptr), ERROR_INVALID_HANDLE));
    EXPECT_TRUE(target.Open());
    EXPECT_TRUE(target.isOpen);
    EXPECT_FALSE(target.useLock);
    EXPECT_TRUE(LogAt(target, 0, L"lost"));
    EXPECT_EQ(ReadBytes(LogPath()), wideMark);
}

TEST_F(FailingSystem, AMutexThatMayNotBeCreatedIsOpenedWithoutAnyRight)
{
    std::optional<DWORD> access;
    std::wstring name;
    NamedMutex others;
    ASSERT_TRUE(others.CreateOrOpen(LogName().c_str()));
    CreateMutexCall const fault(Failing(HANDLE(nullptr), ERROR_ACCESS_DENIED));
    OpenMutexCall const open([&](auto next, DWORD asked, BOOL inherit, wchar_t const* mutexName) {
        access = asked;
        name = mutexName;
        return next(MUTEX_ALL_ACCESS, inherit, mutexName);
    });
    EXPECT_TRUE(target.Open());
    EXPECT_EQ(access, 0u);
    EXPECT_EQ(name, LogName());
    LogAt(target, 0, L"m");
    EXPECT_EQ(MessagesIn(LogPath()), std::vector<std::wstring>{L"m"});
    EXPECT_TRUE(target.Close());
}

TEST_F(FailingSystem, AMutexThatMayNotBeOpenedEitherIsDoneWithout)
{
    CreateMutexCall const create(Failing(HANDLE(nullptr), ERROR_ACCESS_DENIED));
    OpenMutexCall const open(Failing(HANDLE(nullptr), ERROR_ACCESS_DENIED));
    EXPECT_TRUE(target.Open());
    EXPECT_FALSE(target.useLock);
}

TEST_F(FailingSystem, OtherErrorsOfTheCreationDoNotLeadToAnOpening)
{
    bool opened = false;
    CreateMutexCall const create(Failing(HANDLE(nullptr), ERROR_INVALID_HANDLE));
    OpenMutexCall const open([&](auto...) {
        opened = true;
        return HANDLE(nullptr);
    });
    EXPECT_TRUE(target.Open());
    EXPECT_FALSE(opened);
}

namespace
{

class FailingWait : public FailingSystem, public testing::WithParamInterface<DWORD>
{
};

INSTANTIATE_TEST_SUITE_P(Outcomes, FailingWait, testing::Values(DWORD{WAIT_TIMEOUT}, DWORD{WAIT_FAILED}));

} // namespace

TEST_P(FailingWait, WhileOpeningSilencesTheTarget)
{
    {
        WaitCall const fault(Failing(GetParam(), ERROR_INVALID_HANDLE));
        EXPECT_TRUE(target.Open());
    }
    EXPECT_TRUE(target.isOpen);
    EXPECT_FALSE(target.useLock);
    EXPECT_TRUE(LogAt(target, 0, L"lost"));
    EXPECT_EQ(ReadBytes(LogPath()), wideMark);
}

TEST_P(FailingWait, WhileOpeningLeavesOutTheSizeCheck)
{
    WriteLogOfSize(LogPath(), limit);
    WaitCall const fault(Failing(GetParam(), ERROR_INVALID_HANDLE));
    EXPECT_TRUE(target.Open());
    EXPECT_TRUE(Copies().empty());
}

TEST_P(FailingWait, OnceMeansThatNoFurtherLineReachesTheFile)
{
    ASSERT_TRUE(target.Open());
    LogAt(target, 0, L"before");
    {
        WaitCall const fault(Failing(GetParam(), ERROR_INVALID_HANDLE));
        EXPECT_TRUE(LogAt(target, 0, L"lost"));
    }
    EXPECT_TRUE(LogAt(target, 0, L"after"));
    EXPECT_EQ(MessagesIn(LogPath()), std::vector<std::wstring>{L"before"});
}

TEST_F(FailingSystem, TheWaitLastsAtMostTwoSeconds)
{
    std::vector<DWORD> waits;
    WaitCall const wait([&](auto next, HANDLE handle, DWORD milliseconds) {
        waits.push_back(milliseconds);
        return next(handle, milliseconds);
    });
    ASSERT_TRUE(target.Open());
    LogAt(target, 0, L"m");
    EXPECT_EQ(waits, (std::vector<DWORD>{2'000, 2'000}));
}

TEST_F(FailingSystem, AnAbandonedMutexIsOwnedAndReleased)
{
    ASSERT_TRUE(target.Open());
    int released = 0;
    WaitCall const wait([](auto next, HANDLE handle, DWORD milliseconds) {
        auto const result = next(handle, milliseconds);
        return result == WAIT_OBJECT_0 ? DWORD{WAIT_ABANDONED} : result;
    });
    ReleaseMutexCall const release([&](auto next, HANDLE handle) {
        ++released;
        return next(handle);
    });
    LogAt(target, 0, L"m");
    EXPECT_EQ(released, 1);
    EXPECT_TRUE(target.useLock);
    EXPECT_EQ(MessagesIn(LogPath()), std::vector<std::wstring>{L"m"});
}

// --- writing ---

TEST_F(FailingSystem, ALineIsLostWhenTheEndOfTheFileCannotBeFound)
{
    ASSERT_TRUE(target.Open());
    {
        SetFilePointerCall const fault(Failing(FALSE, ERROR_INVALID_HANDLE));
        EXPECT_TRUE(LogAt(target, 0, L"lost"));
    }
    LogAt(target, 0, L"after");
    EXPECT_EQ(MessagesIn(LogPath()), std::vector<std::wstring>{L"after"});
}

TEST_F(FailingSystem, ALineIsLostWhenTheDiskIsFull)
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

// The line end is written all the same, so that the next line begins on its own; its result is the operation's.
TEST_F(FailingSystem, ATextThatCannotBeWrittenLeavesItsLineEnd)
{
    ASSERT_TRUE(target.Open());
    int skipped = 0;
    WriteFileCall const fault(FailingAfter(skipped, FALSE, ERROR_DISK_FULL));
    EXPECT_TRUE(target.WriteRaw(L"lost"));
    EXPECT_EQ(ReadBytes(LogPath()), wideMark + Utf16(L"\r\n"));
}

TEST_F(FailingSystem, ALineEndThatCannotBeWrittenIsReported)
{
    ASSERT_TRUE(target.Open());
    int skipped = 1;
    WriteFileCall const fault(FailingAfter(skipped, FALSE, ERROR_DISK_FULL));
    EXPECT_FALSE(target.WriteRaw(L"text"));
    EXPECT_EQ(ReadBytes(LogPath()), wideMark + Utf16(L"text"));
}

TEST_F(FailingSystem, WithoutAFileLinesAreLost)
{
    ASSERT_TRUE(target.Open());
    target.file.Reset();
    EXPECT_TRUE(LogAt(target, 0, L"lost"));
    EXPECT_TRUE(target.useLock);
}

TEST_F(FailingSystem, ALineInUtf8IsLostWhenItCannotBeConverted)
{
    target.wideOutput = false;
    ASSERT_TRUE(target.Open());
    WideCharToMultiByteCall const fault(Failing(0, ERROR_INSUFFICIENT_BUFFER));
    EXPECT_TRUE(LogAt(target, 0, L"lost"));
    EXPECT_EQ(ReadBytes(LogPath()), "\xEF\xBB\xBF");
}

// --- rotation ---

TEST_F(FailingSystem, AFileWhoseSizeIsUnknownIsNotRotated)
{
    OpenAtTheLimit();
    GetFileSizeCall const fault(Failing(FALSE, ERROR_IO_DEVICE));
    LogUpToARotation();
    EXPECT_TRUE(Copies().empty());
    EXPECT_FALSE(target.headerPending);
}

namespace
{

// The copying fails: the log stays as it is and goes on, with the header now pending.
class FailingCopy : public FailingSystem
{
  protected:
    FailingCopy()
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

TEST_F(FailingCopy, ByTheOpeningOfTheSource)
{
    CreateFileCall const fault(
        FailingToOpen([](DWORD access, DWORD, DWORD) { return access == (GENERIC_READ | GENERIC_WRITE); }));
    ExpectTheLogToGoOn();
    EXPECT_TRUE(Copies().empty());
}

TEST_F(FailingCopy, ByTheOpeningOfTheDestination)
{
    CreateFileCall const fault(
        FailingToOpen([](DWORD, DWORD, DWORD disposition) { return disposition == OPEN_ALWAYS; }));
    ExpectTheLogToGoOn();
    EXPECT_TRUE(Copies().empty());
}

TEST_F(FailingCopy, ByAReadInItsMiddle)
{
    ReadFileCall const fault([](auto next, HANDLE file, void* buffer, DWORD size, DWORD* read, OVERLAPPED* overlapped) {
        LARGE_INTEGER position = {};
        SetFilePointerCall::Original(file, {}, &position, FILE_CURRENT);
        if (position.QuadPart >= static_cast<LONGLONG>(limit / 2))
        {
            SetLastError(ERROR_CRC);
            return FALSE;
        }
        return next(file, buffer, size, read, overlapped);
    });
    ExpectTheLogToGoOn();
    EXPECT_EQ(Copies().size(), 1u);
}

TEST_F(FailingCopy, ByANameThatCannotBeMade)
{
    GetDateFormatCall const fault(Failing(0, ERROR_INVALID_PARAMETER));
    ExpectTheLogToGoOn();
    EXPECT_TRUE(Copies().empty());
}

// Only reads decide whether a copy has succeeded.
TEST_F(FailingSystem, ACopyThatCannotBeWrittenCountsAsMade)
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

TEST_F(FailingSystem, AFileThatCannotBeEmptiedIsWrittenOn)
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

// Clean-up follows a rotation whatever became of it.
class CleanUp : public FailingSystem
{
  protected:
    CleanUp() { WriteBytes(oldCopy, ""); }

    std::wstring const oldCopy = folder / (Base() + L" 2001-1-1 01-01-01.log");
};

} // namespace

TEST_F(CleanUp, IsDoneThoughTheCopyFailed)
{
    OpenAtTheLimit();
    CreateFileCall const fault(
        FailingToOpen([](DWORD, DWORD, DWORD disposition) { return disposition == OPEN_ALWAYS; }));
    LogUpToARotation();
    EXPECT_TRUE(Copies().empty()); // neither the old one nor a new one
}

TEST_F(CleanUp, IsDoneThoughTheFileCannotBeReopened)
{
    OpenAtTheLimit();
    CreateFileCall const fault(FailingToOpen(ReopeningTheLog));
    LogUpToARotation();
    EXPECT_FALSE(target.file);
    EXPECT_FALSE(FileExists(oldCopy));
}

// The check has failed then, so each further line makes it again; with the file at hand again lines are written.
TEST_F(FailingSystem, AFileThatCannotBeReopenedLosesLinesUntilItCan)
{
    OpenAtTheLimit();
    auto const checked = target.lastCheck;
    {
        CreateFileCall const fault(FailingToOpen(ReopeningTheLog));
        LogUpToARotation();
        EXPECT_FALSE(target.file);
        EXPECT_EQ(target.lastCheck, checked);
    }
    ASSERT_TRUE(target.OpenFile(target.file));
    LogAt(target, 0, L"again");
    EXPECT_EQ(MessagesIn(LogPath()).back(), L"again");
}

TEST_F(CleanUp, LeavesOldCopiesThatCannotBeListedOrDeleted)
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
