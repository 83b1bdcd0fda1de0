#include "bench/harness/Rounds.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

using bench::Contender;
using bench::Round;
using bench::Turns;

TEST(RoundsTest, EachContenderHasOneTurnInARoundAndOneBeforeThatDoesNotCount)
{
    std::vector<int> times(2);
    std::vector<Contender> const contenders{{"a", [&](int) { return 10.0 + times[0]++; }},
                                            {"b", [&](int) { return 20.0 + times[1]++; }}};
    Turns turns(contenders, 7);
    EXPECT_EQ(turns.Next(), (Round{11, 21}));
    EXPECT_EQ(turns.Next(), (Round{12, 22}));
}

TEST(RoundsTest, ABlockIsToldHowManyOperationsItDoes)
{
    std::vector<Contender> const contenders{{"a", [](int operations) { return operations; }}};
    EXPECT_EQ(Turns(contenders, 7).Next(), Round{7});
}

TEST(RoundsTest, EveryOrderOfThreeContendersOccursAndTheSameEachTime)
{
    auto const orders = [] {
        std::string order;
        auto const turn = [&](char name) { return [&order, name](int) { return order += name, 1.0; }; };
        std::vector<Contender> const contenders{{"a", turn('a')}, {"b", turn('b')}, {"c", turn('c')}};
        Turns turns(contenders, 1);
        std::vector<std::string> seen;
        for (int round = 0; round < 60; ++round)
        {
            order.clear();
            turns.Next();
            seen.push_back(order);
        }
        return seen;
    };
    auto const seen = orders();
    EXPECT_EQ(std::set(seen.begin(), seen.end()), (std::set<std::string>{"abc", "acb", "bac", "bca", "cab", "cba"}));
    EXPECT_EQ(orders(), seen);
}

TEST(RoundsTest, ARatioIsThatToTheFloorOfTheSameRound)
{
    std::vector<Round> const rounds{{10, 11}, {20, 24}};
    EXPECT_EQ(bench::Times(rounds, 1), (std::vector<double>{11, 24}));
    EXPECT_EQ(bench::Ratios(rounds, 1), (std::vector<double>{1.1, 1.2}));
}

TEST(RoundsTest, ARoundIsLeftOutWholeWhereABlockTookMoreThanTwiceItsContendersMedian)
{
    std::vector<Round> const rounds{{10, 30}, {10, 30}, {20, 60}, {21, 30}, {10, 61}, {10, 30}, {10, 30}};
    EXPECT_EQ(bench::Undisturbed(rounds), (std::vector<Round>{{10, 30}, {10, 30}, {20, 60}, {10, 30}, {10, 30}}));
}

TEST(RoundsTest, WhereEveryRoundWasDisturbedAllCount)
{
    std::vector<Round> const rounds{{10, 99}, {99, 10}};
    EXPECT_EQ(bench::Undisturbed(rounds), rounds);
}
