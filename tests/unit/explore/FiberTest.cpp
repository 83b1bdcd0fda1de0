#include "explore/harness/Fiber.h"

#include <gtest/gtest.h>
#include <vector>

using explore::Fiber;

TEST(FiberTest, LeavesAFunctionWhereItStandsAndUsesItsStackAgain)
{
    std::vector<int> went;
    for (int turn = 0; turn < 100; ++turn)
    {
        Fiber fiber([&, turn] {
            went.push_back(turn);
            Fiber::Pause();
            went.push_back(-1);
        });
        if (turn % 3 == 0)
        {
            continue; // never begun
        }
        fiber.Run();
        EXPECT_EQ(went.back(), turn);
        EXPECT_FALSE(fiber.HasReturned());
        if (turn % 3 == 1)
        {
            fiber.Run();
            EXPECT_EQ(went.back(), -1);
            EXPECT_TRUE(fiber.HasReturned());
        }
    }
}
