#include "explore/kill/Choice.h"

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <set>

using namespace explore;
using namespace explore::kill;

namespace
{

std::vector<std::uint32_t> Order(std::vector<std::uint32_t> const& kinds, std::uint64_t seed)
{
    Random random(seed);
    return InTurn(kinds, random);
}

// A loop between calls that are made once.
std::vector<std::uint32_t> const withLoop = {7, 1, 2, 1, 2, 1, 2, 1, 2, 9};

} // namespace

TEST(KillChoiceTest, HasEachCallOnce)
{
    auto order = Order(withLoop, 1);
    std::ranges::sort(order);
    EXPECT_EQ(order, (std::vector<std::uint32_t>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9}));
}

TEST(KillChoiceTest, TakesOneOfEachKindBeforeASecondOne)
{
    auto const order = Order(withLoop, 1);
    std::set<std::uint32_t> kinds;
    for (std::size_t at = 0; at < 4; ++at)
    {
        kinds.insert(withLoop[order[at]]);
    }
    EXPECT_EQ(kinds, (std::set<std::uint32_t>{1, 2, 7, 9}));
}

TEST(KillChoiceTest, DrawsTheCallsOfAKind)
{
    std::vector<std::uint32_t> const loop(20, 1);
    auto const order = Order(loop, 1);
    EXPECT_FALSE(std::ranges::is_sorted(order));
    EXPECT_FALSE(std::ranges::is_sorted(order, std::greater()));
}

TEST(KillChoiceTest, IsTheSameForASeedAndAnotherForAnotherOne)
{
    EXPECT_EQ(Order(withLoop, 5), Order(withLoop, 5));
    EXPECT_NE(Order(withLoop, 5), Order(withLoop, 6));
}

TEST(KillChoiceTest, OfNoCallsIsEmpty)
{
    EXPECT_TRUE(Order({}, 1).empty());
}
