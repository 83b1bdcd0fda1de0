#include "simulator/base/Text.h"

#include <gtest/gtest.h>

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
