#include "logging/RotationLimit.h"

#include <gtest/gtest.h>

using namespace zant;

TEST(RotationLimit, GrowsWithWhatIsWritten)
{
    EXPECT_EQ(RotationLimit(LogLevel{10}), 52'428'800u);
    EXPECT_EQ(RotationLimit(LogLevel{20}), 20'971'520u);
    for (auto const threshold : {0, 15, 30, 40, 50, 60, 70, 1000})
    {
        EXPECT_EQ(RotationLimit(LogLevel{threshold}), 15'728'640u) << threshold;
    }
}
