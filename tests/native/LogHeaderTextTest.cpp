#include "logging/LogHeaderText.h"

#include <gtest/gtest.h>
#include <vector>

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

TEST(LogHeaderText, EntriesStandInTheOrderOfTheirKeys)
{
    LogHeaderText header;
    for (auto const* key : {L"OS Name: ", L"OS Version: ", L"OS Locale: ", L"HOV Version: ", L"OS Build Version: ",
                            L"a", L"Bit: ", L"B", L"\xE9"})
    {
        header.Merge({.entries = {{key, L""}}});
    }
    std::vector<std::wstring> keys;
    for (auto const& [key, value] : header.entries)
    {
        keys.push_back(key);
    }
    EXPECT_EQ(keys, (std::vector<std::wstring>{L"B", L"Bit: ", L"HOV Version: ", L"OS Build Version: ", L"OS Locale: ",
                                               L"OS Name: ", L"OS Version: ", L"a", L"\xE9"}));
}

TEST(LogHeaderText, LinesAreTheTitleTheEntriesAndTheClosing)
{
    std::vector<std::wstring> lines;
    Stored().ForEachLine([&](std::wstring const& line) { lines.push_back(line); });
    EXPECT_EQ(lines, (std::vector<std::wstring>{L"title", L"a: 1", L"b: 2", L"closing"}));
}

TEST(LogHeaderText, AnEmptyTitleOrClosingIsNoLine)
{
    std::vector<std::wstring> lines;
    LogHeaderText{.entries = {{L"a: ", L"1"}}}.ForEachLine([&](std::wstring const& line) { lines.push_back(line); });
    EXPECT_EQ(lines, std::vector<std::wstring>{L"a: 1"});
}
