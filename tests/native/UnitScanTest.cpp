#include "logging/UnitScan.h"

#include <gtest/gtest.h>
#include <memory>
#include <vector>

using namespace zant;

namespace
{

std::size_t FirstPlace(Utf16View text, Utf16Unit wanted, std::size_t from = 0)
{
    return FindUnit(text, wanted, from, [](std::size_t) { return true; });
}

} // namespace

// Every length with every place in it; the memory ends where the text does.
TEST(UnitScan, FindsTheFirstPlace)
{
    for (std::size_t length = 0; length < 70; ++length)
    {
        auto const units = std::make_unique<Utf16Unit[]>(length);
        std::fill_n(units.get(), length, u'x');
        Utf16View const text(units.get(), length);
        EXPECT_EQ(FirstPlace(text, '<'), text.npos);
        for (auto place = length; place-- > 0;)
        {
            units[place] = '<';
            EXPECT_EQ(FirstPlace(text, '<'), place);
        }
    }
}

TEST(UnitScan, BeginsWhereItIsTold)
{
    Utf16String const text(50, '<');
    for (std::size_t from = 0; from < text.size(); ++from)
    {
        EXPECT_EQ(FirstPlace(text, '<', from), from);
    }
    EXPECT_EQ(FirstPlace(text, '<', 50), text.npos);
    EXPECT_EQ(FirstPlace(text, '<', 51), text.npos);
}

TEST(UnitScan, OffersEachPlaceOnceUntilOneIsTaken)
{
    Utf16String text(100, 'x');
    for (auto const place : {3u, 15u, 16u, 17u, 31u, 32u, 40u, 63u, 64u, 95u, 96u, 99u})
    {
        text[place] = '<';
    }
    std::vector<std::size_t> offered;
    auto const offer = [&](std::size_t last) {
        offered.clear();
        return FindUnit(text, '<', 0, [&](std::size_t place) {
            offered.push_back(place);
            return place == last;
        });
    };
    EXPECT_EQ(offer(text.npos), text.npos);
    EXPECT_EQ(offered, (std::vector<std::size_t>{3, 15, 16, 17, 31, 32, 40, 63, 64, 95, 96, 99}));
    EXPECT_EQ(offer(17), 17u);
    EXPECT_EQ(offered, (std::vector<std::size_t>{3, 15, 16, 17}));
    EXPECT_EQ(offer(99), 99u);
}

TEST(UnitScan, TellsUnitsFromTheirBytes)
{
    Utf16Unit const units[] = {0x3C00, 0x003D, 0x3C3C, 0xFF3C, 0x003C};
    EXPECT_EQ(FirstPlace({units, 5}, 0x003C), 4u);
    Utf16String const long1(32, 0x3C3C);
    EXPECT_EQ(FirstPlace(long1, 0x003C), long1.npos);
    EXPECT_EQ(FirstPlace(long1 + Utf16String(1, 0xFFFF) + long1, 0xFFFF), 32u);
}

TEST(UnitScan, FindsNothingBehindTheEndOfAShortText)
{
    for (std::size_t length = 0; length < 40; ++length)
    {
        EXPECT_EQ(FirstPlace(Utf16String(length, 'x'), 0), Utf16View::npos);
    }
}
