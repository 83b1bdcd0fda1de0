#include "doctor/timeline/TimelinePage.h"

#include "SampleTimelines.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using namespace doctor;
using namespace std::chrono;
using Json = nlohmann::json;

namespace
{

std::string PageOf(Timeline const& timeline)
{
    std::string page;
    WriteTimelinePage(timeline, [&](std::string_view piece) { page += piece; });
    return page;
}

// What stands between, which must be there once.
std::string Between(std::string const& page, std::string const& begin, std::string const& end)
{
    auto const at = page.find(begin);
    EXPECT_NE(at, page.npos);
    EXPECT_EQ(page.find(begin, at + 1), page.npos);
    auto const from = at + begin.size();
    return page.substr(from, page.find(end, from) - from);
}

std::string DataTextOf(Timeline const& timeline)
{
    return Between(PageOf(timeline), R"(<script type="application/json" id="data">)", "</script>");
}

Json DataOf(Timeline const& timeline)
{
    return Json::parse(DataTextOf(timeline));
}

constexpr std::int64_t beginMilliseconds = 1'704'447'000'000; // 2024-01-05 09:30

Timeline OneLine(std::string message)
{
    return {.files = {"KZEB.log"}, .lines = {{.message = std::move(message), .number = 1}}};
}

} // namespace

TEST(TimelinePage, HoldsWhatIsSaidAtTheTop)
{
    auto const data = DataOf({.title = "KZEB.log",
                              .summary = "It failed.",
                              .verdicts = {{"channel", Result::Failed, "refused"},
                                           {"push", Result::NotSeen, ""},
                                           {"exit", Result::CannotBeTold, ""},
                                           {"start-up", Result::Worked, ""}},
                              .files = {"KZEB.log"}});
    EXPECT_EQ(data["title"], "KZEB.log");
    EXPECT_EQ(data["summary"], "It failed.");
    EXPECT_EQ(data["files"], Json::array({"KZEB.log"}));
    EXPECT_EQ(data["lanes"], Json::array({"platform", "app", "service", "helper", "desktop component"}));
    EXPECT_EQ(data["verdicts"], Json::parse(R"([{"stage":"channel","outcome":"failed","text":"refused"},
                                                {"stage":"push","outcome":"not seen","text":""},
                                                {"stage":"exit","outcome":"cannot be told","text":""},
                                                {"stage":"start-up","outcome":"worked","text":""}])"));
}

TEST(TimelinePage, HoldsLinesInTheLogsOrder)
{
    auto const later = TimelineLine{.time = test::SampleBegin() + 5ms,
                                    .level = zant::LogLevel::Warn,
                                    .thread = 7,
                                    .category = "ZEBMain",
                                    .message = "later",
                                    .file = 1,
                                    .number = 3};
    auto earlier = later;
    earlier.time = test::SampleBegin();
    earlier.number = 4;
    auto const data = DataOf({.files = {"a", "b"}, .lines = {later, earlier}});
    EXPECT_EQ(data["lines"], Json::array({{beginMilliseconds + 5, "WARN", "7", "ZEBMain", "later", 1, 3},
                                          {beginMilliseconds, "WARN", "7", "ZEBMain", "later", 1, 4}}));
}

TEST(TimelinePage, HoldsTextInAnotherFormatWithoutFields)
{
    EXPECT_EQ(DataOf(OneLine("other"))["lines"], Json::array({{nullptr, "", "", "", "other", 0, 1}}));
}

TEST(TimelinePage, HoldsSpansAndMarks)
{
    auto timeline = OneLine("a message");
    auto const begin = test::SampleBegin();
    timeline.spans = {{Lane::Service, "request", begin, begin + 2s, LaneOutcome::Failed, "detail", "channel", {0}},
                      {Lane::Desktop, "process", begin, {}, LaneOutcome::Open, "", "", {}}};
    timeline.marks = {{.lane = Lane::Platform, .time = begin, .name = "push", .outcome = LaneOutcome::Worked},
                      {.lane = Lane::Helper, .time = begin, .name = "named", .line = 0}};
    auto const data = DataOf(timeline);
    EXPECT_EQ(data["spans"], Json::array({{2, "request", beginMilliseconds, beginMilliseconds + 2000, "failed",
                                           "detail", "channel", Json::array({0})},
                                          {4, "process", beginMilliseconds, nullptr, "open", "", "", Json::array()}}));
    EXPECT_EQ(data["marks"], Json::array({{0, beginMilliseconds, "push", "worked", nullptr},
                                          {3, beginMilliseconds, "named", "neutral", 0}}));
}

TEST(TimelinePage, HoldsOnceTheMessageThatNamesItsMark)
{
    auto timeline = OneLine("a message");
    timeline.marks = {{.lane = Lane::App, .time = test::SampleBegin(), .name = "a message", .line = 0}};
    EXPECT_EQ(DataOf(timeline)["marks"], Json::array({{1, beginMilliseconds, nullptr, "neutral", 0}}));
}

TEST(TimelinePage, LetsNoTextEndItsScript)
{
    std::string const markup = "</script><!--<script>";
    auto const time = test::SampleBegin();
    Timeline const timeline{.title = markup,
                            .summary = markup,
                            .verdicts = {{markup, Result::Failed, markup}},
                            .files = {markup},
                            .lines = {{.time = time, .category = markup, .message = markup}},
                            .spans = {{Lane::App, markup, time, {}, LaneOutcome::Open, markup, markup, {}}},
                            .marks = {{.lane = Lane::App, .time = time, .name = markup}}};
    auto const text = DataTextOf(timeline);
    EXPECT_EQ(text.find('<'), text.npos);
    auto const data = Json::parse(text);
    EXPECT_EQ(data["title"], markup);
    EXPECT_EQ(data["files"][0], markup);
    EXPECT_EQ(data["lines"][0][4], markup);
    EXPECT_EQ(data["spans"][0][1], markup);
    EXPECT_EQ(data["marks"][0][2], markup);
}

TEST(TimelinePage, ReplacesBytesThatAreNoText)
{
    EXPECT_EQ(DataOf(OneLine("a\xFF\x80z"))["lines"][0][4], "a\uFFFD\uFFFDz");
}

TEST(TimelinePage, ForbidsAllButItsOwnScriptsAndStyle)
{
    auto const policy = Between(PageOf({}), R"(<meta http-equiv="Content-Security-Policy" content=")", "\">");
    auto withoutHashes = policy;
    for (auto at = withoutHashes.find("'sha256-"); at != withoutHashes.npos; at = withoutHashes.find("'sha256-"))
    {
        withoutHashes.replace(at, withoutHashes.find('\'', at + 1) + 1 - at, "HASH");
    }
    EXPECT_EQ(withoutHashes,
              "default-src 'none'; script-src HASH HASH; style-src HASH; base-uri 'none'; form-action 'none'");
}

TEST(TimelinePage, CarriesTheLicenceOfItsLibrary)
{
    auto const page = PageOf({});
    EXPECT_NE(page.find("d3js.org v5.16.0"), page.npos);
    EXPECT_NE(page.find("Mike Bostock"), page.npos);
    EXPECT_NE(page.find("Redistribution and use in source and binary forms"), page.npos);
}

TEST(TimelinePage, IsUnderOneAndAHalfMegabytesForADayOfABusyMachine)
{
    auto const timeline = test::BusyTimeline();
    ASSERT_EQ(timeline.lines.size(), 4000u);
    ASSERT_EQ(timeline.spans.size(), 1000u);
    EXPECT_LT(PageOf(timeline).size(), 1'500'000u);
}

TEST(TimelinePage, IsNeverInMemoryAsAWhole)
{
    std::size_t largest = 0;
    WriteTimelinePage(test::BusyTimeline(), [&](std::string_view piece) { largest = std::max(largest, piece.size()); });
    EXPECT_LT(largest, 65'536u);
}

TEST(TimelinePage, RefusesAnIndexBeyondTheLinesBeforeItWrites)
{
    auto const refuses = [](auto const& damage) {
        auto timeline = test::SmallTimeline();
        damage(timeline);
        auto pieces = 0;
        EXPECT_THROW(WriteTimelinePage(timeline, [&](std::string_view) { ++pieces; }), std::out_of_range);
        EXPECT_EQ(pieces, 0);
    };
    refuses([](Timeline& timeline) { timeline.lines.back().file = timeline.files.size(); });
    refuses([](Timeline& timeline) { timeline.spans.back().lines = {timeline.lines.size()}; });
    refuses([](Timeline& timeline) { timeline.marks.back().line = timeline.lines.size(); });
}

TEST(TimelinePage, LetsTheFailureOfAWriteThrough)
{
    auto pieces = 0;
    auto const write = [&](std::string_view) {
        ++pieces;
        throw std::runtime_error("full");
    };
    EXPECT_THROW(WriteTimelinePage({}, write), std::runtime_error);
    EXPECT_EQ(pieces, 1);
}
