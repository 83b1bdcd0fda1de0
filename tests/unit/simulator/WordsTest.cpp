#include "simulator/model/Words.h"
#include "simulator/model/Error.h"
#include "simulator/model/Text.h"

#include <gtest/gtest.h>

using Words = std::vector<std::wstring>;

TEST(SplitWords, SeparatesAtBlanks)
{
    EXPECT_EQ(sim::SplitWords(L"  one\ttwo  three\r\n"), (Words{L"one", L"two", L"three"}));
    EXPECT_EQ(sim::SplitWords(L""), Words{});
}

TEST(SplitWords, KeepsWhatIsQuoted)
{
    EXPECT_EQ(sim::SplitWords(L"'a b' \"it's\" x='\"c d\" e' ''"), (Words{L"a b", L"it's", L"x=\"c d\" e", L""}));
}

TEST(SplitWords, EndsAtAComment)
{
    EXPECT_EQ(sim::SplitWords(L"one # two"), Words{L"one"});
    EXPECT_EQ(sim::SplitWords(L"one#two '#'"), (Words{L"one#two", L"#"}));
}

TEST(SplitWords, RefusesAnOpenQuote)
{
    EXPECT_THROW(sim::SplitWords(L"one 'two"), sim::Error);
}

TEST(Quoted, IsOneWordThatGivesTheTextBack)
{
    for (auto const* text : {L"", L"plain", L"two words", L"'", L"\"", L"a'b\"c d", L"# no comment", L"a#b", L"'' ''"})
    {
        EXPECT_EQ(sim::SplitWords(sim::Quoted(text)), Words{text}) << sim::ToUtf8(text);
    }
}

TEST(Quoted, KeepsToOneLine)
{
    EXPECT_EQ(sim::Quoted(L"a\r\nb"), L"'a  b'");
}

TEST(ParseNumber, TakesDecimalAndHexadecimalOf32Bits)
{
    EXPECT_EQ(sim::ParseNumber(L"0"), 0u);
    EXPECT_EQ(sim::ParseNumber(L"4294967295"), 4294967295u);
    EXPECT_EQ(sim::ParseNumber(L"0x8007000E"), 0x8007000Eu);
    EXPECT_EQ(sim::ParseNumber(L"0XaBc"), 0xABCu);
    for (auto const* text :
         {L"", L"0x", L"-1", L"1 ", L"4294967296", L"0x100000000", L"12a", L"0xg", L"99999999999999999999999999"})
    {
        EXPECT_EQ(sim::ParseNumber(text), std::nullopt) << sim::ToUtf8(text);
    }
}
