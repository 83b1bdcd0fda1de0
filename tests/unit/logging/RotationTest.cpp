#include "logging/Rotation.h"

#include "logging/DatedName.h"
#include "tests/support/WrappedSystem.h"
#include "tests/unit/logging/LogFixture.h"

#include <algorithm>
#include <optional>
#include <thread>

using namespace test;
using namespace zant;

namespace
{

class RotationTest : public LogFixture
{
  protected:
    RotationTest() { Configure(target); }

    std::wstring CopyName(std::wstring const& dateAndTime = L"2024-1-5 09-30-12") const
    {
        return Base() + L' ' + dateAndTime + L".log";
    }

    std::wstring CopyPath() const { return folder / CopyName(); }

    // The names in the log's folder that begin with its base name.
    std::vector<std::wstring> LogNames() const
    {
        auto names = NamesIn(folder.Path());
        std::erase_if(names, [this](auto const& name) { return !name.starts_with(Base()); });
        return names;
    }

    void WriteCopies(std::initializer_list<wchar_t const*> datesAndTimes) const
    {
        for (auto const* const dateAndTime : datesAndTimes)
        {
            WriteBytes(folder / CopyName(dateAndTime), "");
        }
    }

    LogTargetDefault target;
};

std::uint64_t SizeOf(std::wstring const& path)
{
    WIN32_FILE_ATTRIBUTE_DATA data = {};
    EXPECT_TRUE(GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data));
    return (std::uint64_t{data.nFileSizeHigh} << 32) | data.nFileSizeLow;
}

struct Limit
{
    LogLevel threshold;
    std::uint64_t bytes;
};

void PrintTo(Limit const& limit, std::ostream* stream)
{
    *stream << testing::PrintToString(limit.bytes);
}

class RotationLimitTest : public RotationTest, public testing::WithParamInterface<Limit>
{
};

INSTANTIATE_TEST_SUITE_P(Thresholds, RotationLimitTest,
                         testing::Values(Limit{LogLevel::Trace, 52'428'800}, Limit{LogLevel::Debug, 20'971'520},
                                         Limit{LogLevel::Info, limit}, Limit{LogLevel::Error, limit},
                                         Limit{LogLevel{15}, limit}),
                         [](auto const& limitInfo) {
                             return "At" + std::to_string(static_cast<int>(limitInfo.param.threshold));
                         });

} // namespace

TEST_P(RotationLimitTest, RotatesAFileOfExactlyTheLimit)
{
    target.threshold = GetParam().threshold;
    WriteLogOfSize(LogPath(), GetParam().bytes);
    EXPECT_TRUE(target.Open());
    EXPECT_EQ(SizeOf(CopyPath()), GetParam().bytes);
    EXPECT_EQ(ReadBytes(LogPath()), wideMark);
    EXPECT_TRUE(target.headerPending);
    EXPECT_TRUE(target.file);
}

TEST_P(RotationLimitTest, LeavesAFileOfOneByteLess)
{
    target.threshold = GetParam().threshold;
    WriteLogOfSize(LogPath(), GetParam().bytes - 1);
    EXPECT_TRUE(target.Open());
    EXPECT_EQ(LogNames(), std::vector{LogName()});
    constexpr std::uint64_t missing = 1 + 4; // at its end: half a code unit, and a line end
    EXPECT_EQ(SizeOf(LogPath()), GetParam().bytes - 1 + missing);
    EXPECT_FALSE(target.headerPending);
}

TEST_F(RotationTest, TheCopyHoldsTheSameBytes)
{
    WriteLogOfSize(LogPath(), limit + 4'095);
    auto const bytes = ReadBytes(LogPath());
    ASSERT_TRUE(target.Open());
    EXPECT_TRUE(ReadBytes(CopyPath()) == bytes);
}

// The emptied file is opened, not created, and gets its mark nevertheless.
TEST_F(RotationTest, LinesGoOnInTheEmptiedFile)
{
    WriteLogOfSize(LogPath(), limit);
    ASSERT_TRUE(target.Open());
    LogAt(target, 0, L"after");
    EXPECT_EQ(MessagesIn(LogPath()), std::vector<std::wstring>{L"after"});
    EXPECT_TRUE(ReadBytes(LogPath()).starts_with(wideMark));
}

// The reopened file has no mark yet: once the clock has advanced, it can be set aside under another name.
TEST_F(RotationTest, TheEmptiedFileIsSetAsideWhenTheSecondHasPassed)
{
    WriteLogOfSize(LogPath(), limit);
    GetLocalTimeCall const ticking([this](auto next, SYSTEMTIME* now) {
        next(now);
        ++localClock.now.wSecond;
    });
    ASSERT_TRUE(target.Open());
    EXPECT_EQ(LogNames(), (std::vector{CopyName(), CopyName(L"2024-1-5 09-30-13"), LogName()}));
    EXPECT_EQ(SizeOf(folder / CopyName(L"2024-1-5 09-30-13")), 0u);
    EXPECT_EQ(ReadBytes(LogPath()), wideMark);
}

TEST_F(RotationTest, TheNextStartGoesOnInTheEmptiedFile)
{
    WriteLogOfSize(LogPath(), limit);
    ASSERT_TRUE(target.Open());
    LogAt(target, 0, L"after");
    target.Close();
    localClock.now.wSecond = 13;
    LogTargetDefault next;
    Configure(next);
    ASSERT_TRUE(next.Open());
    LogAt(next, 0, L"next");
    EXPECT_EQ(LogNames(), (std::vector{CopyName(), LogName()}));
    EXPECT_EQ(MessagesIn(LogPath()), (std::vector<std::wstring>{L"after", L"next"}));
}

// The size is read only while no other process rotates the file or is about to.
TEST_F(RotationTest, OpeningLooksAtTheSizeUnderTheMutex)
{
    std::optional<MutexWait> othersWait;
    GetFileSizeCall const size([&](auto next, HANDLE file, LARGE_INTEGER* bytes) {
        std::thread([&] {
            NamedMutex mutex;
            mutex.CreateOrOpen(LogName().c_str());
            othersWait = mutex.Wait(0).Outcome();
        }).join();
        return next(file, bytes);
    });
    ASSERT_TRUE(target.Open());
    EXPECT_EQ(othersWait, MutexWait::TimedOut);
}

// Each step of the rotation, from the first check.
TEST_F(RotationTest, ALineRotatesUnderTheMutex)
{
    ASSERT_TRUE(target.Open());
    target.file.Reset();
    WriteLogOfSize(LogPath(), limit);
    ASSERT_TRUE(target.OpenFile(target.file));
    WriteCopies({L"2023-12-31 10-00-00"});
    target.lastLine = target.lastCheck + 900;
    std::vector<MutexWait> othersWaits;
    auto const othersTry = [&] {
        std::thread([&] {
            NamedMutex mutex;
            mutex.CreateOrOpen(LogName().c_str());
            othersWaits.push_back(mutex.Wait(0).Outcome());
        }).join();
    };
    {
        CreateFileCall const open([&](auto next, auto... arguments) {
            othersTry();
            return next(arguments...);
        });
        DeleteFileCall const deleting([&](auto next, auto... arguments) {
            othersTry();
            return next(arguments...);
        });
        LogAt(target, 0, L"m");
    }
    EXPECT_EQ(LogNames(), (std::vector{CopyName(), LogName()}));
    EXPECT_GE(othersWaits.size(), 10u);
    EXPECT_EQ(std::ranges::count(othersWaits, MutexWait::TimedOut), std::ssize(othersWaits));
    othersTry();
    EXPECT_EQ(othersWaits.back(), MutexWait::Acquired);
}

TEST_F(RotationTest, TheSizeIsNotLookedAtFor900SecondsOfLoggingTime)
{
    ASSERT_TRUE(target.Open());
    target.file.Reset();
    WriteLogOfSize(LogPath(), limit);
    ASSERT_TRUE(target.OpenFile(target.file));
    auto const lastSecond = static_cast<std::uint64_t>(target.lastCheck) + 899;
    LogAt(target, lastSecond * 1'000 + 999, L"1");
    LogAt(target, lastSecond * 1'000 + 999, L"2");
    EXPECT_EQ(LogNames(), std::vector{LogName()});
}

// The rule considers the last line, not the one about to be written.
TEST_F(RotationTest, TheSizeIsLookedAtByTheLineAfterOneThatIs900SecondsLater)
{
    ASSERT_TRUE(target.Open());
    target.file.Reset();
    WriteLogOfSize(LogPath(), limit);
    ASSERT_TRUE(target.OpenFile(target.file));
    auto const later = static_cast<std::uint64_t>(target.lastCheck) + 900;
    LogAt(target, later * 1'000, L"last of the old");
    EXPECT_EQ(LogNames(), std::vector{LogName()});
    LogAt(target, later * 1'000, L"first of the new");
    EXPECT_EQ(LogNames(), (std::vector{CopyName(), LogName()}));
    EXPECT_EQ(MessagesIn(LogPath()), std::vector<std::wstring>{L"first of the new"});
    EXPECT_EQ(target.lastCheck, static_cast<std::int64_t>(later));
}

TEST_F(RotationTest, ALineWithoutTheLockFlagDoesNotLookAtTheSize)
{
    ASSERT_TRUE(target.Open());
    target.file.Reset();
    WriteLogOfSize(LogPath(), limit);
    ASSERT_TRUE(target.OpenFile(target.file));
    target.lastLine = target.lastCheck + 900;
    LogUnlocked(target, L"m");
    EXPECT_EQ(LogNames(), std::vector{LogName()});
}

TEST_F(RotationTest, AFailedCheckIsMadeAgainByTheNextLine)
{
    ASSERT_TRUE(target.Open());
    auto const checked = target.lastCheck;
    auto const later = (static_cast<std::uint64_t>(checked) + 900) * 1'000;
    LogAt(target, later, L"1");
    {
        GetFileSizeCall const size(Failing(FALSE, ERROR_IO_DEVICE));
        LogAt(target, later, L"2");
        EXPECT_EQ(target.lastCheck, checked);
    }
    LogAt(target, later, L"3");
    EXPECT_EQ(target.lastCheck, checked + 900);
    EXPECT_EQ(MessagesIn(LogPath()), (std::vector<std::wstring>{L"1", L"2", L"3"}));
}

TEST_F(RotationTest, TheStoredHeaderIsWrittenOnceBeforeTheFirstLine)
{
    target.storedHeader = {.title = L"title", .entries = {{L"b: ", L"2"}, {L"a: ", L"1"}}, .closing = L"closing"};
    WriteLogOfSize(LogPath(), limit);
    ASSERT_TRUE(target.Open());
    EXPECT_EQ(ReadBytes(LogPath()), wideMark);
    target.Log(LogLevel::Error, L"r", L"p", L"co", L"ca", L"detail", L"origin", L"1", nullptr, 0, true);
    LogAt(target, 0, L"2");
    EXPECT_EQ(MessagesIn(LogPath()), (std::vector<std::wstring>{L"title", L"a: 1", L"b: 2", L"closing", L"1", L"2"}));
    auto const header = Split(ReadLines(LogPath())[0], L" | ");
    EXPECT_EQ((std::vector(header.begin() + 1, header.begin() + 8)),
              (std::vector<std::wstring>{L"[INFO]", L"r", L"p", L"co", L"ca", L"", L""}));
}

// They are written under the mutex that the line holds.
TEST_F(RotationTest, LinesOfTheHeaderDoNotWaitForTheMutex)
{
    target.storedHeader = {.title = L"title", .closing = L"closing"};
    WriteLogOfSize(LogPath(), limit);
    ASSERT_TRUE(target.Open());
    int waits = 0;
    WaitCall const wait(Counting(waits));
    LogAt(target, 0, L"1");
    EXPECT_EQ(waits, 1);
    EXPECT_EQ(MessagesIn(LogPath()), (std::vector<std::wstring>{L"title", L"closing", L"1"}));
}

TEST_F(RotationTest, ALineWithoutTheLockFlagIsLedByThePendingHeaderToo)
{
    target.storedHeader = {.title = L"title", .closing = L"closing"};
    WriteLogOfSize(LogPath(), limit);
    ASSERT_TRUE(target.Open());
    ASSERT_TRUE(target.headerPending);
    LogUnlocked(target, L"1");
    EXPECT_FALSE(target.headerPending);
    LogUnlocked(target, L"2");
    EXPECT_EQ(MessagesIn(LogPath()), (std::vector<std::wstring>{L"title", L"closing", L"1", L"2"}));
}

// --- the control file ---

class RotationKeepLogs : public RotationTest, public testing::WithParamInterface<std::pair<std::string, bool>>
{
};

INSTANTIATE_TEST_SUITE_P(Contents, RotationKeepLogs,
                         testing::Values(std::pair("keeplogs", true), std::pair(std::string("keeplogs\0", 9), true),
                                         std::pair(std::string("keeplogs\0more", 13), true),
                                         std::pair("keeplog", false), std::pair("keeplogs\n", false),
                                         std::pair("keeplogs\r\n", false), std::pair("keeplogs ", false),
                                         std::pair("keeplogsx", false), std::pair("keeplogs!more", false),
                                         std::pair("KEEPLOGS", false), std::pair(" keeplogs", false),
                                         std::pair("\xEF\xBB\xBFkeeplogs", false), std::pair("", false)));

TEST_P(RotationKeepLogs, OldCopiesStayOnlyForExactlyTheWord)
{
    WriteBytes(folder / L"pvq.trace", GetParam().first);
    WriteCopies({L"2023-12-31 10-00-00"});
    WriteLogOfSize(LogPath(), limit);
    ASSERT_TRUE(target.Open());
    EXPECT_EQ(FileExists(folder / CopyName(L"2023-12-31 10-00-00")), GetParam().second);
}

TEST_F(RotationTest, WithoutTheControlFileOldCopiesGo)
{
    WriteCopies({L"2023-12-31 10-00-00"});
    WriteLogOfSize(LogPath(), limit);
    ASSERT_TRUE(target.Open());
    EXPECT_EQ(LogNames(), (std::vector{CopyName(), LogName()}));
}

TEST_F(RotationTest, WithoutARotationNothingIsCleanedUp)
{
    WriteCopies({L"2023-12-31 10-00-00"});
    ASSERT_TRUE(target.Open());
    EXPECT_TRUE(FileExists(folder / CopyName(L"2023-12-31 10-00-00")));
}

// --- clean-up ---

TEST_F(RotationTest, CopiesOfTodayAndOfThreeDaysBackStay)
{
    WriteCopies(
        {L"2024-1-5 10-00-00", L"2024-1-4 10-00-00", L"2024-1-3 10-00-00", L"2024-1-2 10-00-00", L"2024-1-1 10-00-00"});
    WriteBytes(LogPath(), "");
    DeleteOldCopies(LogPath(), LocalNow());
    EXPECT_EQ(LogNames(), (std::vector{CopyName(L"2024-1-2 10-00-00"), CopyName(L"2024-1-3 10-00-00"),
                                       CopyName(L"2024-1-4 10-00-00"), CopyName(L"2024-1-5 10-00-00"), LogName()}));
}

TEST_F(RotationTest, ACopyOfFourDaysAgoGoes)
{
    WriteCopies({L"2024-1-1 10-00-00"});
    WriteBytes(LogPath(), "");
    DeleteOldCopies(LogPath(), LocalNow());
    EXPECT_EQ(LogNames(), std::vector{LogName()});
}

TEST_F(RotationTest, ACopyOfFiveDaysAgoGoes)
{
    WriteCopies({L"2023-12-31 10-00-00"});
    WriteBytes(LogPath(), "");
    DeleteOldCopies(LogPath(), LocalNow());
    EXPECT_EQ(LogNames(), std::vector{LogName()});
}

TEST_F(RotationTest, OfSevenCopiesOfTodayTheThreeEarliestGo)
{
    WriteCopies({L"2024-1-5 01-00-00", L"2024-1-5 02-00-00", L"2024-1-5 03-00-00", L"2024-1-5 04-00-00",
                 L"2024-1-5 05-00-00", L"2024-1-5 06-00-00", L"2024-1-5 07-00-00"});
    WriteBytes(LogPath(), "");
    DeleteOldCopies(LogPath(), LocalNow());
    EXPECT_EQ(LogNames(), (std::vector{CopyName(L"2024-1-5 04-00-00"), CopyName(L"2024-1-5 05-00-00"),
                                       CopyName(L"2024-1-5 06-00-00"), CopyName(L"2024-1-5 07-00-00"), LogName()}));
}

// The listing fails after the first name: the files found until then are deleted.
TEST_F(RotationTest, ACopyThatIsTooOldGoesAsSoonAsItIsFound)
{
    WriteCopies({L"2023-12-30 10-00-00", L"2023-12-31 10-00-00"});
    FindFirstFileCall const first([&](auto next, wchar_t const* pattern, WIN32_FIND_DATAW* found) {
        auto const search = next(pattern, found);
        found->cFileName[CopyName(L"2023-12-30 10-00-00").copy(found->cFileName, MAX_PATH - 1)] = L'\0';
        return search;
    });
    FindNextFileCall const noMore([&](auto...) {
        EXPECT_FALSE(FileExists(folder / CopyName(L"2023-12-30 10-00-00")));
        SetLastError(ERROR_IO_DEVICE);
        return FALSE;
    });
    DeleteOldCopies(LogPath(), LocalNow());
    EXPECT_TRUE(FileExists(folder / CopyName(L"2023-12-31 10-00-00")));
}

TEST_F(RotationTest, FilesOfOtherNamesAndFoldersStay)
{
    WriteBytes(LogPath(), "");
    WriteBytes(folder / L"other.log", "");
    WriteBytes(folder / (L"x" + LogName()), "");
    auto upper = Base();
    upper[0] = L'T';
    WriteBytes(folder / (upper + L" 2023-12-31 10-00-00.log"), "");
    CreateDirectoryW((folder / (Base() + L" folder")).c_str(), nullptr);
    auto const before = NamesIn(folder.Path());
    DeleteOldCopies(LogPath(), LocalNow());
    EXPECT_EQ(NamesIn(folder.Path()), before);
}

TEST_F(RotationTest, AReadOnlyOldCopyIsLeftAlone)
{
    WriteCopies({L"2023-12-31 10-00-00"});
    auto const path = folder / CopyName(L"2023-12-31 10-00-00");
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY);
    WriteLogOfSize(LogPath(), limit);
    EXPECT_TRUE(target.Open());
    EXPECT_TRUE(FileExists(path));
}
