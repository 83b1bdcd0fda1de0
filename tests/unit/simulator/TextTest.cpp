#include "simulator/base/Text.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

TEST(TextTest, ParsingANumberTakesDecimalAndHexadecimalOf32Bits)
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

TEST(TextTest, TakesWholeLinesOfUtf8)
{
    std::string_view text = "one\r\n\xC3\xA4\n\n\r\r\nrest";
    EXPECT_EQ(sim::TakeUtf8Line(text), L"one");
    EXPECT_EQ(sim::TakeUtf8Line(text), L"\x00E4");
    EXPECT_EQ(sim::TakeUtf8Line(text), L"");
    EXPECT_EQ(sim::TakeUtf8Line(text), L"\r");
    EXPECT_EQ(sim::TakeUtf8Line(text), std::nullopt);
    EXPECT_EQ(text, "rest");
}

TEST(TextTest, ReplacesAPartWhereverItStands)
{
    std::wstring text = L"aXbXX";
    sim::ReplaceAll(text, L"X", L"XY");
    EXPECT_EQ(text, L"aXYbXYXY");
    sim::ReplaceAll(text, L"", L"Z");
    EXPECT_EQ(text, L"aXYbXYXY");
}

TEST(TextTest, AlignsToAWidthAndNeverCuts)
{
    EXPECT_EQ(sim::LeftAligned(L"ab", 4), L"ab  ");
    EXPECT_EQ(sim::LeftAligned(L"abc", 2), L"abc");
    EXPECT_EQ(sim::RightAligned(12, 4), L"  12");
    EXPECT_EQ(sim::RightAligned(12, 4, L'0'), L"0012");
    EXPECT_EQ(sim::RightAligned(12345, 4), L"12345");
}

TEST(TextTest, ListsTextsWithASeparator)
{
    using Texts = std::vector<std::wstring>;
    EXPECT_EQ(sim::Listed(Texts{}, L", "), L"");
    EXPECT_EQ(sim::Listed(Texts{L"a"}, L", "), L"a");
    EXPECT_EQ(sim::Listed(Texts{L"a", L"b"}, L", "), L"a, b");
    EXPECT_EQ(sim::Listed(Texts{L"", L"a", L""}, L", "), L", a, ");
}

TEST(TextTest, WritesHexadecimalDigits)
{
    EXPECT_EQ(sim::HexDigits(0xA, 2), L"0A");
    EXPECT_EQ(sim::HexDigits(0x1F, 1), L"F");
    EXPECT_EQ(sim::Hex(0x8007000E), L"0x8007000E");
}
