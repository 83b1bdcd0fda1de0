#include "tests/unit/logging/LogTargetDefaultTest.h"

using namespace test;
using namespace zant;

using LoggedLine = LogTargetDefaultTest;

TEST_F(LoggedLine, WritesTheWholeLineInUtf16WithALineEnd)
{
    Opened();
    auto const time = 1'704'447'012'045u; // seconds and 45 ms
    target.Log(LogLevel::Info, L"", L"ZEB", L"ZEB", L"ZEBMain", L"", L"ZEB", L"text \u00E4\u20AC", nullptr, time, true);
    std::time_t const seconds = time / 1'000;
    wchar_t local[32];
    std::wcsftime(local, 32, L"%m/%d/%y %H:%M:%S", std::localtime(&seconds));
    auto const expected = std::wstring(local) + L":045 | [INFO] |  | ZEB | ZEB | ZEBMain |  | ZEB | " +
                          std::to_wstring(GetCurrentThreadId()) + L" | text \u00E4\u20AC\r\n";
    EXPECT_EQ(ReadBytes(LogPath()), wideMark + Utf16(expected));
}

TEST_F(LoggedLine, TheTimeIsNowWhenNoneIsGiven)
{
    GetSystemTimeCall const clock([](auto, FILETIME* now) {
        auto const ticks = 116'444'736'000'000'000ull + 1'704'447'012'345ull * 10'000;
        *now = {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
    });
    LogAt(Opened(), 0, L"now");
    LogAt(target, 1'704'447'012'345u, L"given");
    auto const lines = ReadLines(LogPath());
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(Split(lines[0], L" | ")[0], Split(lines[1], L" | ")[0]);
    EXPECT_TRUE(lines[0].substr(0, 21).ends_with(L":345"));
    EXPECT_EQ(target.lastLine, 1'704'447'012);
}

TEST_F(LoggedLine, ANarrowLineHasItsTimeAndWaitsForNothingWithoutItsLockFlag)
{
    Opened();
    auto waits = 0;
    WaitCall const wait(Counting(waits));
    target.Log(LogLevel::Info, L"", L"", L"", L"", "", "", "m", nullptr, 1'704'447'012'345u, false);
    EXPECT_EQ(waits, 0);
    EXPECT_EQ(target.lastLine, 1'704'447'012);
    auto const lines = ReadLines(LogPath());
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_TRUE(lines[0].substr(0, 21).ends_with(L":345"));
}

TEST_F(LoggedLine, ANarrowLineWaitsOnceWithItsLockFlag)
{
    Opened();
    auto waits = 0;
    WaitCall const wait(Counting(waits));
    target.Log(LogLevel::Info, L"", L"", L"", L"", "", "", "m", nullptr, 0, true);
    EXPECT_EQ(waits, 1);
}

TEST_F(LoggedLine, ALineBelowTheThresholdTakesNeitherTimeNorLock)
{
    Opened();
    bool called = false;
    GetSystemTimeCall const clock([&](auto next, FILETIME* now) {
        called = true;
        next(now);
    });
    WaitCall const wait([&](auto next, HANDLE handle, DWORD milliseconds) {
        called = true;
        return next(handle, milliseconds);
    });
    EXPECT_TRUE(LogWide(target, LogLevel::Debug, L"no"));
    EXPECT_TRUE(LogNarrow(target, LogLevel{29}, "no"));
    EXPECT_FALSE(called);
    EXPECT_EQ(ReadBytes(LogPath()), wideMark);
}

TEST_F(LoggedLine, EveryLevelHasItsNameInTheBrackets)
{
    Opened();
    target.threshold = LogLevel::Trace;
    for (auto level : {10, 20, 30, 40, 50, 60, 70, 35, 1000})
    {
        LogWide(target, LogLevel{level}, L"m");
    }
    std::vector<std::wstring> names;
    for (auto const& line : ReadLines(LogPath()))
    {
        names.push_back(Split(line, L" | ")[1]);
    }
    EXPECT_EQ(names, (std::vector<std::wstring>{L"[TRACE]", L"[DEBUG]", L"[INFO]", L"[WARN]", L"[ERROR]", L"[FATAL]",
                                                L"[NONE]", L"[ALL]", L"[ALL]"}));
}

TEST_F(LoggedLine, LevelNumbersBelowTheTableAreBelowEveryThreshold)
{
    Opened();
    target.threshold = LogLevel::Trace;
    EXPECT_TRUE(LogWide(target, LogLevel{9}, L"no"));
    EXPECT_TRUE(LogWide(target, LogLevel{0}, L"no"));
    EXPECT_TRUE(LogWide(target, LogLevel{-1}, L"no"));
    EXPECT_EQ(ReadBytes(LogPath()), wideMark);
}

TEST_F(LoggedLine, TheThresholdNoneSilencesEveryLevel)
{
    Opened();
    target.threshold = LogLevel::None;
    LogWide(target, LogLevel::Fatal, L"no");
    EXPECT_EQ(ReadBytes(LogPath()), wideMark);
}

TEST_F(LoggedLine, ANullFormatWritesNothing)
{
    Opened();
    EXPECT_TRUE(LogWide(target, LogLevel::Fatal, nullptr));
    EXPECT_TRUE(LogNarrow(target, LogLevel::Fatal, nullptr));
    EXPECT_EQ(ReadBytes(LogPath()), wideMark);
}

TEST_F(LoggedLine, NullFieldsAreWrittenAsNothing)
{
    Opened().Log(LogLevel::Info, nullptr, nullptr, nullptr, nullptr, static_cast<wchar_t const*>(nullptr), nullptr,
                 L"m", nullptr, 0, true);
    auto const lines = ReadLines(LogPath());
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_TRUE(lines[0].substr(21).starts_with(L" | [INFO] |  |  |  |  |  |  | "));
}

TEST_F(LoggedLine, AnEmptyMessageStillMakesALine)
{
    LogWide(Opened(), LogLevel::Info, L"");
    EXPECT_EQ(MessagesIn(LogPath()), std::vector<std::wstring>{L""});
}

TEST_F(LoggedLine, LineEndsWithinAMessageAreWrittenAsTheyAre)
{
    LogWide(Opened(), LogLevel::Info, L"one\r\ntwo\n");
    EXPECT_TRUE(ReadBytes(LogPath()).ends_with(Utf16(L" | one\r\ntwo\n\r\n")));
}

TEST_F(LoggedLine, EachLineIsTwoWritesAtTheEndOfTheFile)
{
    Opened();
    std::vector<DWORD> methods, sizes;
    SetFilePointerCall const move(
        [&](auto next, HANDLE file, LARGE_INTEGER distance, LARGE_INTEGER* position, DWORD method) {
            EXPECT_EQ(distance.QuadPart, 0);
            methods.push_back(method);
            return next(file, distance, position, method);
        });
    WriteFileCall const write(
        [&](auto next, HANDLE file, void const* bytes, DWORD size, DWORD* written, OVERLAPPED* overlapped) {
            sizes.push_back(size);
            return next(file, bytes, size, written, overlapped);
        });
    GetFileSizeCall const size([](auto...) {
        ADD_FAILURE() << "a line has no need of the size";
        return FALSE;
    });
    LogWide(target, LogLevel::Info, L"text");
    EXPECT_EQ(methods, std::vector<DWORD>{FILE_END});
    ASSERT_EQ(sizes.size(), 2u);
    EXPECT_EQ(sizes[1], 4u);
}

TEST_F(LoggedLine, AppendsBehindWhatOthersHaveWritten)
{
    LogTargetDefault other;
    Configure(other);
    Opened();
    ASSERT_TRUE(other.Open());
    LogAt(target, 0, L"1");
    LogAt(other, 0, L"a longer second line");
    LogAt(target, 0, L"3");
    EXPECT_EQ(MessagesIn(LogPath()), (std::vector<std::wstring>{L"1", L"a longer second line", L"3"}));
}

TEST_F(LoggedLine, WithoutTheLockFlagALineNeedsNoMutex)
{
    Opened().lock.reset();
    EXPECT_TRUE(LogUnlocked(target, L"m"));
    EXPECT_EQ(MessagesIn(LogPath()), std::vector<std::wstring>{L"m"});
    EXPECT_TRUE(target.useLock);
}

TEST_F(LoggedLine, ALineBeforeOpenIsLostAndSilencesTheTarget)
{
    Configure(target);
    EXPECT_TRUE(LogWide(target, LogLevel::Info, L"early"));
    EXPECT_FALSE(target.useLock);
    EXPECT_TRUE(target.Open());
    EXPECT_TRUE(LogWide(target, LogLevel::Info, L"late"));
    EXPECT_EQ(ReadBytes(LogPath()), wideMark);
}
