#include "explore/harness/Search.h"

#include "explore/harness/Scheduler.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <set>

using namespace explore;

namespace
{

// Two processes that each read a number and write it back, one higher. A fault ends the one it strikes.
class Search : public testing::Test
{
  protected:
    Playable Playing()
    {
        return {faults, [this](Path const& path, Decide const& decide) { return Play(path, decide); },
                [this] { return isMerging ? static_cast<std::uint64_t>(number) : ++m_states; }};
    }

    std::uint8_t faults = 0;
    bool isMerging = false; // whether states are equal that show the same number
    int number = 0;
    std::multiset<int> outcomes;
    std::vector<Path> paths; // of whole plays
    unsigned leftOff = 0;

  private:
    bool Play(Path const& path, Decide const& decide)
    {
        number = 0;
        Scheduler scheduler({[](ProcessNumber) {}, [](FaultNumber, ProcessNumber) { return true; },
                             [] { return false; }, [](unsigned) {}});
        for (int process = 0; process < 2; ++process)
        {
            scheduler.Add([&] {
                scheduler.Meet();
                scheduler.Await(nullptr);
                auto const read = number;
                scheduler.Await(nullptr);
                number = read + 1;
                scheduler.Meet();
            });
        }
        if (scheduler.Run(decide) == Scheduler::End::LeftOff)
        {
            ++leftOff;
            return true;
        }
        outcomes.insert(number);
        paths.push_back(path);
        return true;
    }

    std::uint64_t m_states = 0;
};

} // namespace

TEST_F(Search, OfTheOrdinaryWaySeesNoLoss)
{
    auto const playable = Playing();
    EveryOrder(playable).Play({0, 0});
    EXPECT_EQ(outcomes, (std::multiset<int>{2, 2})); // either may be the first
}

TEST_F(Search, WithOnePreemptionSeesALoss)
{
    auto const playable = Playing();
    EveryOrder(playable).Play({1, 0});
    EXPECT_TRUE(outcomes.contains(1));
    EXPECT_TRUE(outcomes.contains(2));
}

// Three steps each, the way in included: 6 over 3.
TEST_F(Search, PlaysEachOrderOnce)
{
    auto const playable = Playing();
    EveryOrder(playable).Play({9, 0});
    EXPECT_EQ(outcomes.size(), 20u);
    auto distinct = paths;
    std::ranges::sort(distinct, {}, [](Path const& path) { return TextOf(PlayIdOf("a", path, {})); });
    EXPECT_EQ(std::ranges::adjacent_find(distinct), distinct.end());
    EXPECT_EQ(leftOff, 0u);
}

TEST_F(Search, PlaysThoseWithFewDeviationsFirst)
{
    auto const playable = Playing();
    EveryOrder(playable).Play({9, 0});
    EXPECT_TRUE(std::ranges::is_sorted(paths, {}, &Path::size));
    EXPECT_TRUE(paths.front().empty());
}

TEST_F(Search, LeavesOffWhereAPlayWentOnBefore)
{
    isMerging = true;
    auto const playable = Playing();
    EveryOrder(playable).Play({9, 0});
    EXPECT_LT(outcomes.size(), 20u);
    EXPECT_GT(leftOff, 0u);
}

TEST_F(Search, WithOneFaultHasItAtEachStep)
{
    faults = 1;
    auto const playable = Playing();
    EveryOrder(playable).Play({0, 1});
    EXPECT_EQ(outcomes.count(2), 2u); // without a fault; either is the first
    // Either is ended at each of its three steps, as the first or as the second; at the very first step only the one
    // that would go on.
    EXPECT_EQ(outcomes.count(1), 11u);
    EXPECT_EQ(outcomes.size(), 13u);
}

TEST_F(Search, AlongAPathGoesAsItDidBefore)
{
    auto playable = Playing();
    EveryOrder(playable).Play({9, 0});
    auto const before = std::vector<int>(outcomes.begin(), outcomes.end());
    auto const played = paths;
    outcomes.clear();
    for (auto const& path : played)
    {
        AlongPath along(path);
        playable.play(path, [&](Turn const& turn) { return along.Of(turn); });
    }
    EXPECT_EQ(std::vector<int>(outcomes.begin(), outcomes.end()), before);
}

TEST_F(Search, ByChanceIsTheSameForTheSameSeed)
{
    auto const playable = Playing();
    auto const played = [&](std::uint64_t seed) {
        paths.clear();
        Random random(seed);
        for (int play = 0; play < 50; ++play)
        {
            PlayByChance(playable, random, 3, 6);
        }
        return paths;
    };
    auto const first = played(1);
    EXPECT_EQ(played(1), first);
    EXPECT_NE(played(2), first);
    EXPECT_TRUE(outcomes.contains(1)); // the order that loses a step was among them
}
