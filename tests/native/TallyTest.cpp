#include "explore/harness/Tally.h"

#include <gtest/gtest.h>

using namespace explore;

TEST(TallyTest, KeepsTheFirstOfTheShortestPlays)
{
    Tally tally;
    tally.Count("lost", {"a", {{1, "B"}, {2, "A"}}});
    tally.Count("lost", {"b", {{3, "B"}}});
    tally.Count("lost", {"c", {{4, "B"}}});
    ASSERT_EQ(tally.Entries().size(), 1u);
    EXPECT_EQ(tally.Entries().at("lost").plays, 3u);
    EXPECT_EQ(TextOf(tally.Entries().at("lost").shortest), "b:3=B");
}
