#include "simulator/log/LogLine.h"

#include <gtest/gtest.h>

TEST(LogLineTest, IsTakenApart)
{
    auto const line = sim::ParseLogLine(
        L"01/05/24 09:30:12:045 | [WARN] |  | ZEB | Comp | ZEBMain | detail | ZEB | 4660 | a message | with this");
    ASSERT_TRUE(line);
    EXPECT_EQ(line->time, sim::MomentOf(2024, 1, 5, 9, 30, 12, 45));
    EXPECT_EQ(line->level, L"WARN");
    EXPECT_EQ(line->product, L"ZEB");
    EXPECT_EQ(line->component, L"Comp");
    EXPECT_EQ(line->category, L"ZEBMain");
    EXPECT_EQ(line->detail, L"detail");
    EXPECT_EQ(line->origin, L"ZEB");
    EXPECT_EQ(line->thread, L"4660");
    EXPECT_EQ(line->message, L"a message | with this");
}

TEST(LogLineTest, OfAnotherFormIsNone)
{
    for (auto const* line : {L"", L"text", L"01/05/24 09:30:12:045 | [INFO] |  | ZEB | ZEB | ZEBMain |  | ZEB",
                             L"99/05/24 09:30:12:045 | [INFO] |  | ZEB | ZEB | ZEBMain |  | ZEB | 1 | x",
                             L"01/05/24 09:30:12:045 | INFO |  | ZEB | ZEB | ZEBMain |  | ZEB | 1 | x"})
    {
        EXPECT_FALSE(sim::ParseLogLine(line)) << line;
    }
}
