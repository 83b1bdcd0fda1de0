#include "bench/harness/TimeShares.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;
using bench::TimeShares;

namespace
{

constexpr TimeShares::TimePoint start{};

} // namespace

TEST(TimeSharesTest, EachHasTheSameShare)
{
    TimeShares shares(start, 180s, 3);
    EXPECT_EQ(shares.EndOfNext(start), start + 60s);
    EXPECT_EQ(shares.EndOfNext(start + 60s), start + 120s);
    EXPECT_EQ(shares.EndOfNext(start + 120s), start + 180s);
}

TEST(TimeSharesTest, WhatOneLeavesOverIsTheNextOnes)
{
    TimeShares shares(start, 180s, 3);
    shares.EndOfNext(start);
    EXPECT_EQ(shares.EndOfNext(start + 20s), start + 100s);
    EXPECT_EQ(shares.EndOfNext(start + 100s), start + 180s);
}

TEST(TimeSharesTest, WhatIsLateEndsAtOnce)
{
    TimeShares shares(start, 180s, 2);
    EXPECT_LE(shares.EndOfNext(start + 200s), start + 200s);
}
