#include "logging/LogTargetDefault.h"

#include "tests/unit/logging/LogFixture.h"
#include "tests/unit/logging/WrappedSystem.h"

using namespace test;
using namespace zant;

namespace
{

class LogTargetDefaultTest : public LogFixture
{
  protected:
    LogTargetDefault& Opened()
    {
        Configure(target);
        EXPECT_TRUE(target.Open());
        return target;
    }

    LogTargetDefault target;
};

} // namespace

// --- construction, opening, closing ---

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

// --- files of another encoding ---

class WrongEncoding : public LogTargetDefaultTest
{
  protected:
    std::wstring AsideName() const { return Base() + L" 2024-1-5 09-30-12.log"; }
};

TEST_F(WrongEncoding, AUtf8FileIsSetAsideAndANewFileBegun)
{
    WriteBytes(LogPath(), "\xEF\xBB\xBFold");
    Opened();
    EXPECT_EQ(ReadBytes(LogPath()), wideMark);
    EXPECT_EQ(ReadBytes(folder / AsideName()), "\xEF\xBB\xBFold");
    EXPECT_EQ(target.setAsidePath, folder / AsideName());
}

TEST_F(WrongEncoding, AFileWithoutAMarkIsSetAside)
{
    WriteBytes(LogPath(), "plain");
    Opened();
    EXPECT_EQ(ReadBytes(folder / AsideName()), "plain");
}

TEST_F(WrongEncoding, AFileShorterThanAMarkIsSetAside)
{
    WriteBytes(LogPath(), "\xFF");
    Opened();
    EXPECT_EQ(ReadBytes(folder / AsideName()), "\xFF");
    EXPECT_EQ(ReadBytes(LogPath()), wideMark);
}

TEST_F(WrongEncoding, TheFileIsAppendedToAsItStandsWhenItsDatedNameIsTaken)
{
    WriteBytes(LogPath(), "plain");
    WriteBytes(folder / AsideName(), "earlier");
    Opened();
    EXPECT_EQ(ReadBytes(folder / AsideName()), "earlier");
    EXPECT_EQ(ReadBytes(LogPath()), "plain");
    EXPECT_EQ(target.setAsidePath, L"");
}

TEST_F(WrongEncoding, AnyFileServesOutputInUtf8)
{
    WriteBytes(LogPath(), "plain");
    target.wideOutput = false;
    Opened();
    EXPECT_EQ(ReadBytes(LogPath()), "plain");
}

TEST_F(WrongEncoding, AnOpenHandleIsClosedBeforeTheFileIsSetAside)
{
    Opened();
    target.file.Reset();
    WriteBytes(LogPath(), "plain");
    target.file = UniqueHandle(CreateFileW(LogPath().c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                           nullptr, OPEN_EXISTING, 0, nullptr));
    EXPECT_TRUE(target.OpenFile(target.file));
    EXPECT_EQ(ReadBytes(folder / AsideName()), "plain");
}

// --- lines ---

TEST_F(LogTargetDefaultTest, WritesTheWholeLineInUtf16WithALineEnd)
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

TEST_F(LogTargetDefaultTest, WritesUtf8WhenAsked)
{
    target.wideOutput = false;
    LogAt(Opened(), 0, L"\u00E4\u20AC\xD83D\xDE00");
    EXPECT_TRUE(ReadBytes(LogPath()).ends_with(" | \xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80\r\n"));
}

TEST_F(LogTargetDefaultTest, TheTimeIsNowWhenNoneIsGiven)
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

TEST_F(LogTargetDefaultTest, ALineBelowTheThresholdTakesNeitherTimeNorLock)
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

TEST_F(LogTargetDefaultTest, EveryLevelHasItsNameInTheBrackets)
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

TEST_F(LogTargetDefaultTest, LevelNumbersBelowTheTableAreBelowEveryThreshold)
{
    Opened();
    target.threshold = LogLevel::Trace;
    EXPECT_TRUE(LogWide(target, LogLevel{9}, L"no"));
    EXPECT_TRUE(LogWide(target, LogLevel{0}, L"no"));
    EXPECT_TRUE(LogWide(target, LogLevel{-1}, L"no"));
    EXPECT_EQ(ReadBytes(LogPath()), wideMark);
}

TEST_F(LogTargetDefaultTest, TheThresholdNoneSilencesEveryLevel)
{
    Opened();
    target.threshold = LogLevel::None;
    LogWide(target, LogLevel::Fatal, L"no");
    EXPECT_EQ(ReadBytes(LogPath()), wideMark);
}

TEST_F(LogTargetDefaultTest, ANullFormatWritesNothing)
{
    Opened();
    EXPECT_TRUE(LogWide(target, LogLevel::Fatal, nullptr));
    EXPECT_TRUE(LogNarrow(target, LogLevel::Fatal, nullptr));
    EXPECT_EQ(ReadBytes(LogPath()), wideMark);
}

TEST_F(LogTargetDefaultTest, NullFieldsAreWrittenAsNothing)
{
    Opened().Log(LogLevel::Info, nullptr, nullptr, nullptr, nullptr, static_cast<wchar_t const*>(nullptr), nullptr,
                 L"m", nullptr, 0, true);
    auto const lines = ReadLines(LogPath());
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_TRUE(lines[0].substr(21).starts_with(L" | [INFO] |  |  |  |  |  |  | "));
}

TEST_F(LogTargetDefaultTest, AnEmptyMessageStillMakesALine)
{
    LogWide(Opened(), LogLevel::Info, L"");
    EXPECT_EQ(MessagesIn(LogPath()), std::vector<std::wstring>{L""});
}

TEST_F(LogTargetDefaultTest, LineEndsWithinAMessageAreWrittenAsTheyAre)
{
    LogWide(Opened(), LogLevel::Info, L"one\r\ntwo\n");
    EXPECT_TRUE(ReadBytes(LogPath()).ends_with(Utf16(L" | one\r\ntwo\n\r\n")));
}

TEST_F(LogTargetDefaultTest, UnpairedSurrogatesAreWrittenAsTheyAre)
{
    LogWide(Opened(), LogLevel::Info, L"%ls", L"a\xD800z\xDC00");
    EXPECT_TRUE(ReadBytes(LogPath()).ends_with(Utf16(L" | a\xD800z\xDC00\r\n")));
}

TEST_F(LogTargetDefaultTest, UnpairedSurrogatesBecomeReplacementCharactersInUtf8)
{
    target.wideOutput = false;
    LogWide(Opened(), LogLevel::Info, L"%ls", L"a\xD800z");
    EXPECT_TRUE(ReadBytes(LogPath()).ends_with(" | a\xEF\xBF\xBDz\r\n"));
}

TEST_F(LogTargetDefaultTest, ANarrowLineIsConvertedThroughout)
{
    Opened().Log(LogLevel::Warn, L"", L"", L"", L"\u00FC", "d\xC3\xA9", "\xE2\x82\xAC", "\xC3\xA4", nullptr, 0, true);
    auto const lines = ReadLines(LogPath());
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_TRUE(lines[0].find(L" | \u00FC | d\u00E9 | \u20AC | ") != std::wstring::npos) << lines.size();
    EXPECT_EQ(MessageOf(lines[0]), L"\u00E4");
}

TEST_F(LogTargetDefaultTest, NarrowNullFieldsAreWrittenAsNothing)
{
    Opened().Log(LogLevel::Info, nullptr, nullptr, nullptr, nullptr, static_cast<char const*>(nullptr), nullptr, "m",
                 nullptr, 0, true);
    auto const lines = ReadLines(LogPath());
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_TRUE(lines[0].substr(21).starts_with(L" | [INFO] |  |  |  |  |  |  | "));
}

// Each text of a narrow line that is not UTF-8 in turn; the line is lost and the next one is written.
TEST_F(LogTargetDefaultTest, ANarrowLineWithInvalidUtf8IsNotWritten)
{
    Opened();
    EXPECT_TRUE(LogNarrow(target, LogLevel::Info, "\xC3("));
    EXPECT_TRUE(LogNarrow(target, LogLevel::Info, "%s", "\xFF"));
    EXPECT_TRUE(target.Log(LogLevel::Info, L"", L"", L"", L"", "\xFF", "", "m", nullptr, 0, true));
    EXPECT_TRUE(target.Log(LogLevel::Info, L"", L"", L"", L"", "", "\xFF", "m", nullptr, 0, true));
    LogNarrow(target, LogLevel::Info, "good");
    EXPECT_EQ(MessagesIn(LogPath()), std::vector<std::wstring>{L"good"});
}

TEST_F(LogTargetDefaultTest, EachLineIsTwoWritesAtTheEndOfTheFile)
{
    Opened();
    std::vector<DWORD> sizes;
    WriteFileCall const write(
        [&](auto next, HANDLE file, void const* bytes, DWORD size, DWORD* written, OVERLAPPED* overlapped) {
            sizes.push_back(size);
            return next(file, bytes, size, written, overlapped);
        });
    LogWide(target, LogLevel::Info, L"text");
    ASSERT_EQ(sizes.size(), 2u);
    EXPECT_EQ(sizes[1], 4u);
}

TEST_F(LogTargetDefaultTest, AppendsBehindWhatOthersHaveWritten)
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

TEST_F(LogTargetDefaultTest, WithoutTheLockFlagALineNeedsNoMutex)
{
    Opened().lock.reset();
    EXPECT_TRUE(target.Log(LogLevel::Info, L"", L"", L"", L"", L"", L"", L"m", nullptr, 0, false));
    EXPECT_EQ(MessagesIn(LogPath()), std::vector<std::wstring>{L"m"});
    EXPECT_TRUE(target.useLock);
}

TEST_F(LogTargetDefaultTest, ALineBeforeOpenIsLostAndSilencesTheTarget)
{
    Configure(target);
    EXPECT_TRUE(LogWide(target, LogLevel::Info, L"early"));
    EXPECT_FALSE(target.useLock);
    EXPECT_TRUE(target.Open());
    EXPECT_TRUE(LogWide(target, LogLevel::Info, L"late"));
    EXPECT_EQ(ReadBytes(LogPath()), wideMark);
}

TEST_F(LogTargetDefaultTest, RawNarrowTextIsWrittenWithALineEndOfTwoBytes)
{
    Opened();
    EXPECT_TRUE(target.WriteRaw("raw"));
    EXPECT_EQ(ReadBytes(LogPath()), wideMark + "raw\r\n");
}

TEST_F(LogTargetDefaultTest, RawWideTextIsWrittenWithALineEndOfFourBytes)
{
    Opened();
    EXPECT_TRUE(target.WriteRaw(L"raw"));
    EXPECT_EQ(ReadBytes(LogPath()), wideMark + Utf16(L"raw\r\n"));
}

// --- length of messages ---

class MessageLength : public LogTargetDefaultTest, public testing::WithParamInterface<std::size_t>
{
};

INSTANTIATE_TEST_SUITE_P(Around, MessageLength, testing::Values(4'093, 4'094, 4'095, 100'000));

TEST_P(MessageLength, AFormattedMessageIsCutAt4094Characters)
{
    std::wstring const text(GetParam(), L'x');
    LogWide(Opened(), LogLevel::Info, L"%ls", text.c_str());
    LogWide(target, LogLevel::Info, text.c_str());
    auto const expected = text.substr(0, 4'094);
    EXPECT_EQ(MessagesIn(LogPath()), (std::vector{expected, expected}));
}

TEST_P(MessageLength, AFormattedNarrowMessageIsCutAt4094Characters)
{
    std::string const text(GetParam(), 'x');
    LogNarrow(Opened(), LogLevel::Info, "%s", text.c_str());
    LogNarrow(target, LogLevel::Info, text.c_str());
    std::wstring const expected(std::min<std::size_t>(GetParam(), 4'094), L'x');
    EXPECT_EQ(MessagesIn(LogPath()), (std::vector{expected, expected}));
}

TEST_P(MessageLength, AMessageWithoutArgumentsIsNeverCut)
{
    std::wstring const text(GetParam(), L'x');
    std::string const narrow(GetParam(), 'x');
    LogAt(Opened(), 0, text.c_str());
    target.Log(LogLevel::Info, L"", L"", L"", L"", "", "", narrow.c_str(), nullptr, 0, true);
    EXPECT_EQ(MessagesIn(LogPath()), (std::vector{text, text}));
}
