#include "bench/harness/Interval.h"

#include <gtest/gtest.h>

#include <numeric>

using bench::MedianInterval;

namespace
{

std::vector<double> OneTo(std::size_t last)
{
    std::vector<double> values(last);
    std::iota(values.begin(), values.end(), 1.0);
    return values;
}

} // namespace

TEST(IntervalTest, TheMedianOfAnEvenNumberLiesBetweenTheTwoInTheMiddle)
{
    EXPECT_EQ(MedianInterval({4, 1, 3, 2}).median, 2.5);
    EXPECT_EQ(MedianInterval({9, 1, 2}).median, 2);
}

// The 40th and the 61st of 100: the ranks that a table of the sign test gives for 95 %.
TEST(IntervalTest, TheIntervalOfAHundredReachesFromThe40thToThe61st)
{
    auto const interval = MedianInterval(OneTo(100));
    EXPECT_EQ(interval.low, 40);
    EXPECT_EQ(interval.high, 61);
}

TEST(IntervalTest, FewValuesGiveTheirExtremes)
{
    auto const interval = MedianInterval({5, 1, 3});
    EXPECT_EQ(interval.low, 1);
    EXPECT_EQ(interval.high, 5);
}

TEST(IntervalTest, MoreValuesNarrowTheInterval)
{
    EXPECT_LT(MedianInterval(OneTo(10'000)).Precision(), MedianInterval(OneTo(100)).Precision() / 5);
}

TEST(IntervalTest, ThePrecisionIsHalfTheWidthAsAPartOfTheMedian)
{
    bench::Interval const interval{.low = 9, .median = 10, .high = 12};
    EXPECT_EQ(interval.Precision(), 0.15);
}
