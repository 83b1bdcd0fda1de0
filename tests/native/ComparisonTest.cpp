#include "bench/harness/Comparison.h"

#include <gtest/gtest.h>

using bench::Compare;
using bench::Verdict;

namespace
{

constexpr auto never = [] { return false; };

// Takes the given times by turns.
bench::Block Taking(std::vector<double> times)
{
    return [times, turn = std::size_t{0}](int) mutable { return times[turn++ % times.size()]; };
}

bench::Table CompareWith(bench::Contender const& contender)
{
    return Compare({"title", {{"floor", Taking({100})}, contender}, 1}, {40, never});
}

// An end for what would go on: so many looks at the clock.
std::function<bool()> After(int looks)
{
    return [looks]() mutable { return --looks < 0; };
}

} // namespace

TEST(ComparisonTest, TheTableHoldsTheFloorTheFloorAgainAndTheContenders)
{
    auto const table = CompareWith({"ours", Taking({103}), 1.05});
    ASSERT_EQ(table.rows.size(), 3u);
    EXPECT_EQ(table.title, "title");
    EXPECT_EQ(table.rows[0].name, "floor");
    EXPECT_EQ(table.rows[0].verdict, Verdict::None);
    EXPECT_EQ(table.SameAgain().name, "the same again (A/A)");
    EXPECT_EQ(table.SameAgain().ratio.median, 1);
    EXPECT_EQ(table.SameAgain().verdict, Verdict::None);
    EXPECT_EQ(table.rows[2].name, "ours");
    EXPECT_EQ(table.rows[2].time, 103);
    EXPECT_EQ(table.rows[2].ratio.median, 1.03);
    EXPECT_EQ(table.rows[2].limit, 1.05);
}

TEST(ComparisonTest, ALimitHoldsWhereTheWholeIntervalIsNotOver)
{
    EXPECT_EQ(CompareWith({"ours", Taking({103}), 1.03}).rows[2].verdict, Verdict::Holds);
}

TEST(ComparisonTest, ALimitIsOverWhereTheWholeIntervalIsOver)
{
    EXPECT_EQ(CompareWith({"ours", Taking({103}), 1.02}).rows[2].verdict, Verdict::Over);
}

TEST(ComparisonTest, AnIntervalOnBothSidesOfTheLimitTellsNothing)
{
    auto const table =
        Compare({"", {{"floor", Taking({100})}, {"ours", Taking({101, 105}), 1.03}}, 1}, {40, After(200)});
    EXPECT_EQ(table.rows[2].verdict, Verdict::CannotTell);
}

TEST(ComparisonTest, ItEndsOnceAllLimitsAreKnown)
{
    EXPECT_EQ(CompareWith({"ours", Taking({103}), 1.05}).rounds, 40u);
}

TEST(ComparisonTest, ItGoesOnWhileAnIntervalIsWiderThanOnePercentToEitherSide)
{
    // 40 rounds give the extremes of 90 to 110 for the median; the middle ones of thousands are near 100.
    std::vector<double> spread;
    for (int time = 0; time <= 100; ++time)
    {
        spread.push_back(90 + time * 37 % 101 * 0.2);
    }
    auto const table = CompareWith({"ours", Taking(spread), 1.5});
    EXPECT_GT(table.rounds, 100u);
    EXPECT_LE(table.rows[2].ratio.Precision(), 0.01);
}

TEST(ComparisonTest, ItGoesOnWhileTheFloorsOwnIntervalIsWide)
{
    auto floor = Taking({90, 110, 100, 105, 95});
    auto const shared = [&floor](int operations) { return floor(operations); }; // of which both take their times
    EXPECT_GT(Compare({"", {{"floor", shared}}, 1}, {40, After(100)}).rounds, 40u);
}

TEST(ComparisonTest, ARowWithoutALimitIsNotWaitedFor)
{
    EXPECT_EQ(CompareWith({"peer", Taking({50, 150})}).rounds, 40u);
}

TEST(ComparisonTest, ItEndsWhenItsTimeIsUp)
{
    auto const table =
        Compare({"", {{"floor", Taking({100})}, {"ours", Taking({101, 105}), 1.03}}, 1}, {40, [] { return true; }});
    EXPECT_EQ(table.rounds, 1u);
}

TEST(ComparisonTest, RoundsInWhichSomethingElseHadTheCoreAreCounted)
{
    std::vector<double> times(40, 100);
    times[7] = 300;
    auto const table = CompareWith({"ours", Taking(times), 1.05});
    EXPECT_EQ(table.leftOut, 1u);
    EXPECT_EQ(table.rounds, 39u);
    EXPECT_EQ(table.rows[2].ratio.high, 1);
}
