#include "explore/harness/Chosen.h"

#include <gtest/gtest.h>

using namespace explore;

namespace
{

struct Named
{
    std::string name;
    bool isShort;
};

std::vector<Named> const stories{{"a", true}, {"b", false}, {"c", true}};

std::string NamesOf(Chosen<Named> const& chosen)
{
    std::string names;
    for (auto const* const story : chosen.stories)
    {
        names += story->name;
    }
    return names;
}

Chosen<Named> Choose(std::vector<std::string> const& names)
{
    return ChosenStories(stories, names, &Named::isShort);
}

} // namespace

TEST(ChosenTest, IsTheShareWithoutNames)
{
    EXPECT_EQ(NamesOf(Choose({})), "ac");
    EXPECT_EQ(Choose({}).unknown, "");
}

TEST(ChosenTest, IsWhatIsNamedInThatOrderInTheShareOrNot)
{
    EXPECT_EQ(NamesOf(Choose({"c", "b"})), "cb");
}

TEST(ChosenTest, IsNothingBesideANameThatNoneHas)
{
    EXPECT_EQ(Choose({"a", "d", "e"}).unknown, "d");
    EXPECT_EQ(NamesOf(Choose({"a", "d", "e"})), "");
}

TEST(ChosenTest, FindsOneByItsName)
{
    EXPECT_EQ(FindNamed(stories, "b"), &stories[1]);
    EXPECT_EQ(FindNamed(stories, "d"), nullptr);
}

TEST(ChosenTest, AStorysNameCanBeListed)
{
    EXPECT_EQ(explore::NamesOf(stories), (std::vector<std::string>{"a", "b", "c"}));
}
