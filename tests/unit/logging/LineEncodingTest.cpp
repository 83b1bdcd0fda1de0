#include "tests/unit/logging/LogTargetDefaultTest.h"

using namespace test;
using namespace zant;

using LineEncoding = LogTargetDefaultTest;

TEST_F(LineEncoding, WritesUtf8WhenAsked)
{
    target.wideOutput = false;
    LogAt(Opened(), 0, L"\u00E4\u20AC\xD83D\xDE00");
    EXPECT_TRUE(ReadBytes(LogPath()).ends_with(" | \xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80\r\n"));
}

TEST_F(LineEncoding, UnpairedSurrogatesAreWrittenAsTheyAre)
{
    LogWide(Opened(), LogLevel::Info, L"%ls", L"a\xD800z\xDC00");
    EXPECT_TRUE(ReadBytes(LogPath()).ends_with(Utf16(L" | a\xD800z\xDC00\r\n")));
}

TEST_F(LineEncoding, UnpairedSurrogatesBecomeReplacementCharactersInUtf8)
{
    target.wideOutput = false;
    LogWide(Opened(), LogLevel::Info, L"%ls", L"a\xD800z");
    EXPECT_TRUE(ReadBytes(LogPath()).ends_with(" | a\xEF\xBF\xBDz\r\n"));
}

TEST_F(LineEncoding, ANarrowLineIsConvertedThroughout)
{
    Opened().Log(LogLevel::Warn, L"r", L"p", L"co", L"\u00FC", "d\xC3\xA9", "\xE2\x82\xAC", "\xC3\xA4", nullptr, 0,
                 true);
    auto const lines = ReadLines(LogPath());
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_TRUE(lines[0].find(L" | [WARN] | r | p | co | \u00FC | d\u00E9 | \u20AC | ") != std::wstring::npos)
        << lines.size();
    EXPECT_EQ(MessageOf(lines[0]), L"\u00E4");
}

TEST_F(LineEncoding, NarrowNullFieldsAreWrittenAsNothing)
{
    Opened().Log(LogLevel::Info, nullptr, nullptr, nullptr, nullptr, static_cast<char const*>(nullptr), nullptr, "m",
                 nullptr, 0, true);
    auto const lines = ReadLines(LogPath());
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_TRUE(lines[0].substr(21).starts_with(L" | [INFO] |  |  |  |  |  |  | "));
}

// Each narrow string of a line in turn is not UTF-8: the line is lost, and the next one written.
TEST_F(LineEncoding, ANarrowLineWithInvalidUtf8IsNotWritten)
{
    Opened();
    EXPECT_TRUE(LogNarrow(target, LogLevel::Info, "\xC3("));
    EXPECT_TRUE(LogNarrow(target, LogLevel::Info, "%s", "\xFF"));
    EXPECT_TRUE(target.Log(LogLevel::Info, L"", L"", L"", L"", "\xFF", "", "m", nullptr, 0, true));
    EXPECT_TRUE(target.Log(LogLevel::Info, L"", L"", L"", L"", "", "\xFF", "m", nullptr, 0, true));
    LogNarrow(target, LogLevel::Info, "good");
    EXPECT_EQ(MessagesIn(LogPath()), std::vector<std::wstring>{L"good"});
}

TEST_F(LineEncoding, RawNarrowTextIsWrittenWithALineEndOfTwoBytes)
{
    Opened();
    EXPECT_TRUE(target.WriteRaw("raw"));
    EXPECT_EQ(ReadBytes(LogPath()), wideMark + "raw\r\n");
}

TEST_F(LineEncoding, RawWideTextIsWrittenWithALineEndOfFourBytes)
{
    Opened();
    EXPECT_TRUE(target.WriteRaw(L"raw"));
    EXPECT_EQ(ReadBytes(LogPath()), wideMark + Utf16(L"raw\r\n"));
}
