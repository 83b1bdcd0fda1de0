#include "simulator/base/Words.h"
#include "simulator/base/Error.h"
#include "simulator/base/Text.h"

#include <gtest/gtest.h>

using Words = std::vector<std::wstring>;

TEST(WordsTest, SplittingSeparatesAtBlanks)
{
    EXPECT_EQ(sim::SplitWords(L"  one\ttwo  three\r\n"), (Words{L"one", L"two", L"three"}));
    EXPECT_EQ(sim::SplitWords(L""), Words{});
}

TEST(WordsTest, SplittingKeepsWhatIsQuoted)
{
    EXPECT_EQ(sim::SplitWords(L"'a b' \"it's\" x='\"c d\" e' ''"), (Words{L"a b", L"it's", L"x=\"c d\" e", L""}));
}

TEST(WordsTest, SplittingEndsAtAComment)
{
    EXPECT_EQ(sim::SplitWords(L"one # two"), Words{L"one"});
    EXPECT_EQ(sim::SplitWords(L"one#two '#'"), (Words{L"one#two", L"#"}));
}

TEST(WordsTest, SplittingRefusesAnOpenQuote)
{
    EXPECT_THROW(sim::SplitWords(L"one 'two"), sim::Error);
}

TEST(WordsTest, QuotingGivesOneWordThatIsTheTextAgain)
{
    for (auto const* text : {L"", L"plain", L"two words", L"'", L"\"", L"a'b\"c d", L"# no comment", L"a#b", L"'' ''"})
    {
        EXPECT_EQ(sim::SplitWords(sim::Quoted(text)), Words{text}) << sim::ToUtf8(text);
    }
}

TEST(WordsTest, QuotingKeepsToOneLine)
{
    EXPECT_EQ(sim::Quoted(L"a\r\nb"), L"'a  b'");
}
