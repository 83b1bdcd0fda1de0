#include "logging/Utf8Cut.h"

#include <gtest/gtest.h>
#include <string>

using namespace zant;

TEST(Utf8Cut, TakesAHalvedCharacterOff)
{
    EXPECT_EQ(WithoutHalvedCharacter("ab\xC3"), "ab");
    EXPECT_EQ(WithoutHalvedCharacter("ab\xE2"), "ab");
    EXPECT_EQ(WithoutHalvedCharacter("ab\xE2\x82"), "ab");
    EXPECT_EQ(WithoutHalvedCharacter("ab\xF0"), "ab");
    EXPECT_EQ(WithoutHalvedCharacter("ab\xF0\x9F"), "ab");
    EXPECT_EQ(WithoutHalvedCharacter("ab\xF0\x9F\x98"), "ab");
}

TEST(Utf8Cut, LeavesWholeCharacters)
{
    for (std::string const text : {"", "a", "ab", "a\xC3\xA4", "\xE2\x82\xAC", "\xF0\x9F\x98\x80"})
    {
        EXPECT_EQ(WithoutHalvedCharacter(text), text);
    }
}

TEST(Utf8Cut, LeavesOtherInvalidBytes)
{
    for (std::string const text :
         {"\x80", "\x80\x80", "\x80\x80\x80\x80\x80", "a\x80", "\xFF\x80\x80\x80", "\xC3(", "\xE2\x82\xAC\x80"})
    {
        EXPECT_EQ(WithoutHalvedCharacter(text), text) << text;
    }
}
