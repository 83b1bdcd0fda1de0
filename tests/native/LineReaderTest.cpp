#include "doctor/log/LineReader.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

using doctor::LineReader;
using doctor::RawLine;

namespace
{

using namespace std::string_literals;

struct Line
{
    std::string text;
    std::uint64_t number = 0;
    bool isDamaged = false;
    bool isComplete = true;

    bool operator==(Line const&) const = default;
};

void PrintTo(Line const& line, std::ostream* stream)
{
    *stream << line.number << ": '" << line.text << "'" << (line.isDamaged ? " damaged" : "")
            << (line.isComplete ? "" : " incomplete");
}

std::vector<Line> LinesOf(std::string_view bytes, std::size_t blockSize)
{
    std::vector<Line> lines;
    auto const take = [&](RawLine const& line) {
        lines.push_back({std::string(line.text), line.number, line.isDamaged, line.isComplete});
    };
    LineReader reader;
    for (; !bytes.empty(); bytes.remove_prefix(std::min(blockSize, bytes.size())))
    {
        reader.Add(bytes.substr(0, blockSize), take);
    }
    reader.End(take);
    return lines;
}

// The lines, which do not depend on the blocks in which the bytes come.
std::vector<Line> LinesOf(std::string_view bytes)
{
    auto lines = LinesOf(bytes, bytes.size() + 1);
    for (auto const blockSize : {1u, 2u, 3u, 63u, 64u, 65u})
    {
        EXPECT_EQ(LinesOf(bytes, blockSize), lines) << "in blocks of " << blockSize;
    }
    return lines;
}

std::string Utf16(std::u16string_view text)
{
    std::string bytes;
    for (auto const unit : text)
    {
        bytes += {static_cast<char>(unit & 0xFF), static_cast<char>(unit >> 8)};
    }
    return bytes;
}

std::string const mark = "\xFF\xFE";

} // namespace

TEST(LineReader, GivesTheLinesOfAFileInUtf16)
{
    EXPECT_EQ(LinesOf(mark + Utf16(u"one\r\n\r\nthree\n")), (std::vector<Line>{{"one", 1}, {"", 2}, {"three", 3}}));
}

TEST(LineReader, GivesTheLinesOfAFileInUtf8WithAMarkAndWithout)
{
    std::vector<Line> const lines = {{"\u00E9n", 1}, {"two", 2}};
    EXPECT_EQ(LinesOf("\xEF\xBB\xBF\u00E9n\r\ntwo\n"), lines);
    EXPECT_EQ(LinesOf("\u00E9n\r\ntwo\n"), lines);
}

TEST(LineReader, RecognisesUtf16WithoutAMark)
{
    EXPECT_EQ(LinesOf(Utf16(u"one\r\ntwo\r\n")), (std::vector<Line>{{"one", 1}, {"two", 2}}));
}

TEST(LineReader, GivesNothingOfAnEmptyFileOrOneOfItsMarkOnly)
{
    EXPECT_EQ(LinesOf(""), std::vector<Line>{});
    EXPECT_EQ(LinesOf(mark), std::vector<Line>{});
    EXPECT_EQ(LinesOf("\xEF\xBB\xBF"), std::vector<Line>{});
}

TEST(LineReader, GivesTheRestBehindTheLastLineEndAsIncomplete)
{
    EXPECT_EQ(LinesOf(mark + Utf16(u"one\r\ntw")), (std::vector<Line>{{"one", 1}, {"tw", 2, false, false}}));
    EXPECT_EQ(LinesOf("one\ntw"), (std::vector<Line>{{"one", 1}, {"tw", 2, false, false}}));
}

TEST(LineReader, DecodesCharactersBeyondTheBasicPlane)
{
    EXPECT_EQ(LinesOf(mark + Utf16(u"\u00E9\u20AC\U0001F600\r\n")), (std::vector<Line>{{"\u00E9\u20AC\U0001F600", 1}}));
}

TEST(LineReader, ReplacesUnpairedSurrogates)
{
    EXPECT_EQ(LinesOf(mark + Utf16(u"a\xD83Dz\r\n\xDE00 b\r\n\xD83D\nend\r\n")),
              (std::vector<Line>{{"a\uFFFDz", 1, true}, {"\uFFFD b", 2, true}, {"\uFFFD", 3, true}, {"end", 4}}));
}

TEST(LineReader, ReplacesWhatIsNoUtf8)
{
    EXPECT_EQ(LinesOf("a\xC3z\n\xED\xA0\x80\n\xF4\x90\x80\x80\n\xC0\x80\xE0\x80\x80\n"
                      "\xF0\x80\x80\x80\n\xF5\x80\x80\x80\nend\n"),
              (std::vector<Line>{{"a\uFFFDz", 1, true},
                                 {"\uFFFD\uFFFD\uFFFD", 2, true},
                                 {"\uFFFD\uFFFD\uFFFD\uFFFD", 3, true},
                                 {"\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD", 4, true},
                                 {"\uFFFD\uFFFD\uFFFD\uFFFD", 5, true},
                                 {"\uFFFD\uFFFD\uFFFD\uFFFD", 6, true},
                                 {"end", 7}}));
}

TEST(LineReader, SaysThatAFileEndsInTheMiddleOfACodeUnit)
{
    EXPECT_EQ(LinesOf(mark + Utf16(u"one\r\ntwo") + "x"),
              (std::vector<Line>{{"one", 1}, {"two\uFFFD", 2, true, false}}));
}

TEST(LineReader, IsBackInStepWithTheNextLineAfterAByteTooMany)
{
    auto const lines = LinesOf(mark + Utf16(u"one\r\n") + "x" + Utf16(u"two\r\nthree\r\nfour\r\n"));
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(lines[0], (Line{"one", 1}));
    EXPECT_TRUE(lines[1].isDamaged);
    EXPECT_EQ(lines[2], (Line{"three", 3}));
    EXPECT_EQ(lines[3], (Line{"four", 4}));
}

TEST(LineReader, IsBackInStepWithTheNextLineAfterAMissingByte)
{
    auto const lines = LinesOf(mark + Utf16(u"one\r\nt").substr(0, 11) + Utf16(u"wo\r\nthree\r\n"));
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_TRUE(lines[1].isDamaged);
    EXPECT_EQ(lines[2], (Line{"three", 3}));
}

TEST(LineReader, GivesALineThatIsTooLongInPieces)
{
    auto const most = LineReader::mostBytes;
    std::vector<Line> const lines = {{std::string(most, 'x'), 1, true, false}, {"xyz", 1, true}, {"end", 2}};
    auto const text = std::string(most + 1, 'x') + "yz\nend\n";
    EXPECT_EQ(LinesOf(text, 1'000), lines);
    EXPECT_EQ(LinesOf(mark + Utf16(std::u16string(text.begin(), text.end())), 1'000), lines);
}

TEST(LineReader, KeepsZeroCharactersOfBinaryData)
{
    EXPECT_EQ(LinesOf("binary\0\0data\n"s), (std::vector<Line>{{"binary\0\0data"s, 1}}));
}

TEST(LineReader, FindsUtf16BehindABeginThatHidesIt)
{
    auto const lines = Utf16(u"first line\r\nsecond line\r\n");
    auto const other = "text of another program, which is longer than what tells the encoding\n"s;
    EXPECT_EQ(LinesOf(other + lines),
              (std::vector<Line>{{other.substr(0, other.size() - 1), 1}, {"first line", 2}, {"second line", 3}}));
    std::string const noise(65, '\x81'); // an odd number of bytes
    auto const behindNoise = LinesOf(noise + "\n" + lines);
    ASSERT_EQ(behindNoise.size(), 3u);
    EXPECT_EQ(behindNoise[1], (Line{"first line", 2}));
    EXPECT_EQ(behindNoise[2], (Line{"second line", 3}));
}

TEST(LineReader, TakesZerosInUtf8ForNoOtherEncoding)
{
    std::string const first(80, 'a');
    auto const hole = std::string(100, '\0') + "second";
    EXPECT_EQ(LinesOf(first + "\n" + hole + "\nthird line\n"),
              (std::vector<Line>{{first, 1}, {hole, 2}, {"third line", 3}}));
}
