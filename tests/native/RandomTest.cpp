#include "explore/harness/Random.h"

#include <gtest/gtest.h>

using explore::Random;

TEST(RandomTest, GivesTheSameNumbersForTheSameSeed)
{
    // Those of SplitMix64's authors for the seed 1234567.
    Random random(1'234'567);
    EXPECT_EQ(random.Next(), 6'457'827'717'110'365'317u);
    EXPECT_EQ(random.Next(), 3'203'168'211'198'807'973u);
    EXPECT_NE(Random(1).Next(), Random(2).Next());
}

TEST(RandomTest, StaysBelowItsEnd)
{
    Random random(1);
    for (int turn = 0; turn < 1'000; ++turn)
    {
        ASSERT_LT(random.Below(7), 7u);
    }
}
