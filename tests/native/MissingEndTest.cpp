#include "logging/MissingEnd.h"

#include <gtest/gtest.h>
#include <string>

using namespace zant;
using namespace std::string_view_literals;

namespace
{

std::string_view Missing(std::string_view text, bool wide)
{
    return MissingEnd(text.size(), text[text.size() - 2], text[text.size() - 1], wide);
}

std::string CompletedUtf16(std::string_view text)
{
    return std::string(text).append(Missing(text, true));
}

std::string CompletedUtf8(std::string_view text)
{
    return std::string(text).append(Missing(text, false));
}

constexpr auto whole = "a\0\r\0\n\0"sv;

} // namespace

TEST(MissingEnd, OfUtf16IsNothingBehindALineEnd)
{
    EXPECT_EQ(CompletedUtf16(whole), whole);
    EXPECT_EQ(CompletedUtf16("a\0\n\0"sv), "a\0\n\0"sv);
}

// However many bytes of it are there.
TEST(MissingEnd, OfUtf16IsTheRestOfTheLineEnd)
{
    for (std::size_t size = 2; size < whole.size(); ++size)
    {
        EXPECT_EQ(CompletedUtf16(whole.substr(0, size)), whole) << size;
    }
}

TEST(MissingEnd, OfUtf16IsTheSecondHalfOfACodeUnit)
{
    EXPECT_EQ(CompletedUtf16("a\0b"sv), "a\0b\0\r\0\n\0"sv);
    EXPECT_EQ(CompletedUtf16("a\0\0"sv), "a\0\0\0\r\0\n\0"sv);
    EXPECT_EQ(CompletedUtf16("\0\r\0\n\0"sv), "\0\r\0\n\0\0\r\0\n\0"sv);
}

// U+0A00, U+0A0A, U+0D0D and U+0A0D are letters of some script.
TEST(MissingEnd, OfUtf16TakesOnlyWholeCodeUnitsForALineEnd)
{
    for (auto const letter : {"\0\n"sv, "\n\n"sv, "\r\r"sv, "\r\n"sv, "\n\r"sv})
    {
        EXPECT_EQ(Missing(letter, true), "\r\0\n\0"sv);
    }
}

TEST(MissingEnd, OfUtf8IsTheRestOfTheLineEnd)
{
    EXPECT_EQ(CompletedUtf8("ab"), "ab\r\n");
    EXPECT_EQ(CompletedUtf8("abc"), "abc\r\n");
    EXPECT_EQ(CompletedUtf8("ab\r"), "ab\r\n");
    EXPECT_EQ(CompletedUtf8("ab\r\n"), "ab\r\n");
    EXPECT_EQ(CompletedUtf8("ab\n"), "ab\n");
    EXPECT_EQ(CompletedUtf8("\n\r"), "\n\r\n");
}

TEST(MissingEnd, OfUtf8LeavesAHalvedCharacter)
{
    EXPECT_EQ(CompletedUtf8("a\xE2\x82"), "a\xE2\x82\r\n");
}
