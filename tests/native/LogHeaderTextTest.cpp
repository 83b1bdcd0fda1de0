#include "logging/LogHeaderText.h"

#include <gtest/gtest.h>

using namespace zant;

namespace
{

LogHeaderText Stored()
{
    return {.title = L"title", .entries = {{L"a: ", L"1"}, {L"b: ", L"2"}}, .closing = L"closing"};
}

} // namespace

TEST(LogHeaderText, ATitleAndAClosingLineReplaceThoseThereAre)
{
    auto header = Stored();
    header.Merge({.title = L"new title", .closing = L"new closing"});
    EXPECT_EQ(header.title, L"new title");
    EXPECT_EQ(header.closing, L"new closing");
    EXPECT_EQ(header.entries, Stored().entries);
}

TEST(LogHeaderText, EmptyOnesReplaceNothing)
{
    auto header = Stored();
    header.Merge({});
    EXPECT_EQ(header.title, L"title");
    EXPECT_EQ(header.closing, L"closing");
    EXPECT_EQ(header.entries, Stored().entries);
}

TEST(LogHeaderText, EntriesAreAddedOrOverwritten)
{
    auto header = Stored();
    header.Merge({.entries = {{L"b: ", L""}, {L"c: ", L"3"}}});
    EXPECT_EQ(header.entries, (std::map<std::wstring, std::wstring>{{L"a: ", L"1"}, {L"b: ", L""}, {L"c: ", L"3"}}));
}

TEST(LogHeaderText, ATargetsOwnIsEmpty)
{
    auto const header = BuildLogHeader();
    EXPECT_EQ(header.title, L"");
    EXPECT_TRUE(header.entries.empty());
    EXPECT_EQ(header.closing, L"");
    EXPECT_FALSE(header.merge);
}
