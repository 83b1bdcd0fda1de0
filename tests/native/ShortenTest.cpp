#include "explore/harness/Shorten.h"

#include <gtest/gtest.h>

using namespace explore;

TEST(ShortenTest, LeavesOutWhatIsNotNeeded)
{
    PlayId const play{"a", {{1, "B"}, {2, "kill"}, {3, "A"}, {4, "B"}}};
    auto const shows = [](PlayId const& candidate) {
        auto const text = TextOf(candidate);
        return text.find("2=kill") != text.npos && text.find("4=B") != text.npos;
    };
    EXPECT_EQ(TextOf(Shortened(play, shows)), "a:2=kill,4=B");
}

TEST(ShortenTest, KeepsAllOfAPlayThatNeedsAll)
{
    PlayId const play{"a", {{1, "B"}, {2, "kill"}}};
    EXPECT_EQ(Shortened(play, [&](PlayId const& candidate) { return candidate == play; }), play);
}
