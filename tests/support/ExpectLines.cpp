#include "tests/support/ExpectLines.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <iomanip>
#include <optional>
#include <set>

namespace test
{

namespace
{

using Lines = std::vector<std::wstring>;

// The number of expected lines matched so far.
struct Place
{
    std::size_t common = 0;
    std::size_t oneThread = 0;
    std::size_t otherThread = 0;

    auto operator<=>(Place const&) const = default;

    std::size_t Count() const { return common + oneThread + otherThread; }
};

bool IsNext(std::wstring const& line, Lines const& expected, std::size_t at)
{
    return at < expected.size() && expected[at] == line;
}

// The places after one more line: several when it may be of either thread.
std::set<Place> Behind(std::set<Place> const& places, std::wstring const& line, InterleavedLines const& expected)
{
    std::set<Place> next;
    for (auto const& [common, oneThread, otherThread] : places)
    {
        auto const isCommonOver = common == expected.common.size();
        if (IsNext(line, expected.common, common))
        {
            next.insert({common + 1, oneThread, otherThread});
        }
        if (isCommonOver && IsNext(line, expected.oneThread, oneThread))
        {
            next.insert({common, oneThread + 1, otherThread});
        }
        if (isCommonOver && IsNext(line, expected.otherThread, otherThread))
        {
            next.insert({common, oneThread, otherThread + 1});
        }
    }
    return next;
}

// The first difference; nullopt: none.
std::optional<Place> FirstDifference(Lines const& lines, InterleavedLines const& expected)
{
    std::set<Place> places = {Place{}};
    for (auto const& line : lines)
    {
        auto next = Behind(places, line, expected);
        if (next.empty())
        {
            return *places.begin();
        }
        places = std::move(next);
    }
    Place const all{expected.common.size(), expected.oneThread.size(), expected.otherThread.size()};
    return places.contains(all) ? std::nullopt : std::optional(*places.begin());
}

// Shows the lines around the marked one; after the last one, the end is marked.
void Show(testing::Message& text, char const* title, Lines const& lines, std::size_t marked)
{
    constexpr std::size_t neighbours = 3;
    auto const begin = marked - std::min(marked, neighbours);
    auto const end = std::min(lines.size(), marked + neighbours + 1);
    text << title << (begin > 0 ? "\n    ..." : "");
    for (auto at = begin; at < end; ++at)
    {
        text << (at == marked ? "\n> " : "\n  ") << std::setw(3) << at + 1 << "  " << lines[at];
    }
    text << (marked == lines.size() ? "\n>      (nothing more)" : "") << (end < lines.size() ? "\n    ...\n" : "\n");
}

} // namespace

void ExpectLines(Lines const& lines, Lines const& expected, std::source_location where)
{
    ExpectInterleaved(lines, {expected, {}, {}}, where);
}

void ExpectInterleaved(Lines const& lines, InterleavedLines const& expected, std::source_location where)
{
    auto const place = FirstDifference(lines, expected);
    if (!place)
    {
        return;
    }
    testing::Message text;
    Show(text, "expected:", expected.common, place->common);
    if (place->common == expected.common.size() && !(expected.oneThread.empty() && expected.otherThread.empty()))
    {
        Show(text, "expected then, of one thread:", expected.oneThread, place->oneThread);
        Show(text, "and of another one, before, between or behind:", expected.otherThread, place->otherThread);
    }
    Show(text, "found:", lines, place->Count());
    ADD_FAILURE_AT(where.file_name(), static_cast<int>(where.line())) << text;
}

} // namespace test
