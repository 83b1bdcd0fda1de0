#include "explore/harness/Options.h"

#include <gtest/gtest.h>

using namespace explore;

namespace
{

ParsedOptions Parsed(std::vector<char const*> const& arguments)
{
    return ParseOptions(arguments);
}

} // namespace

TEST(ExploreOptionsTest, WithoutAnyAreTheDefaults)
{
    auto const [options, error] = Parsed({});
    EXPECT_EQ(error, "");
    EXPECT_EQ(options.seed, 1u);
    EXPECT_FALSE(options.isShort);
    EXPECT_EQ(options.longest, std::nullopt);
    EXPECT_EQ(options.replay, std::nullopt);
    EXPECT_TRUE(options.stories.empty());
}

TEST(ExploreOptionsTest, AreRead)
{
    auto const [options, error] =
        Parsed({"a", "--seed", "18446744073709551615", "--for", "5", "--replay", "a:1=B", "--short", "b"});
    EXPECT_EQ(error, "");
    EXPECT_EQ(options.seed, 18'446'744'073'709'551'615u);
    EXPECT_TRUE(options.isShort);
    EXPECT_EQ(options.longest, std::chrono::minutes(5));
    EXPECT_EQ(options.replay, (PlayId{"a", {{1, "B"}}}));
    EXPECT_EQ(options.stories, (std::vector<std::string>{"a", "b"}));
}

TEST(ExploreOptionsTest, SayWhatIsWrong)
{
    EXPECT_EQ(Parsed({"--seed"}).error, "--seed needs a value");
    EXPECT_EQ(Parsed({"--seed", "1x"}).error, "--seed takes no 1x");
    EXPECT_EQ(Parsed({"--for", "0"}).error, "--for takes no 0");
    EXPECT_EQ(Parsed({"--for", "100001"}).error, "--for takes no 100001");
    EXPECT_EQ(Parsed({"--replay", "a:"}).error, "--replay takes no a:");
    EXPECT_EQ(Parsed({"--deep"}).error, "there is no option --deep");
}
