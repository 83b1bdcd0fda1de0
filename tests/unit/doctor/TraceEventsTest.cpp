#include "doctor/timeline/TraceEvents.h"

#include "SampleTimelines.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using namespace doctor;
using namespace std::chrono;
using Json = nlohmann::json;

namespace
{

Json TraceOf(Timeline const& timeline)
{
    std::string trace;
    WriteTraceEvents(timeline, [&](std::string_view piece) { trace += piece; });
    return Json::parse(trace);
}

Json EventsOf(Timeline const& timeline, std::string_view phase)
{
    auto const trace = TraceOf(timeline);
    auto events = Json::array();
    for (auto const& event : trace["traceEvents"])
    {
        if (event["ph"] == phase)
        {
            events.push_back(event);
        }
    }
    return events;
}

TimelineSpan Span(milliseconds begin, std::optional<milliseconds> end, Lane lane = Lane::Service)
{
    auto const origin = test::SampleBegin();
    auto const endTime = end ? std::optional(origin + *end) : std::nullopt;
    return {.lane = lane, .name = "request", .begin = origin + begin, .end = endTime, .outcome = LaneOutcome::Worked};
}

Json ValuesOf(Json const& events, char const* key)
{
    auto values = Json::array();
    for (auto const& event : events)
    {
        values.push_back(event[key]);
    }
    return values;
}

} // namespace

TEST(TraceEvents, WritesASpanAsACompleteEvent)
{
    auto span = Span(1500ms, 3500ms);
    span.detail = "answered";
    span.stage = "channel";
    span.lines = {0};
    Timeline const timeline{.files = {"KZEB.log"},
                            .lines = {{.time = test::SampleBegin(),
                                       .level = zant::LogLevel::Warn,
                                       .thread = 7,
                                       .message = "a line",
                                       .number = 3}},
                            .spans = {Span(0ms, 1ms), span}};
    auto const events = EventsOf(timeline, "X");
    ASSERT_EQ(events.size(), 2u);
    EXPECT_EQ(events[1], Json::parse(R"({"ph":"X","name":"request","pid":3,"tid":1,"cat":"channel",
        "ts":1500000,"dur":2000000,"args":{"outcome":"worked","detail":"answered","message":"a line",
        "file":"KZEB.log","line":3,"level":"WARN","thread":7}})"));
}

TEST(TraceEvents, WritesAMarkAsAnInstant)
{
    auto const begin = test::SampleBegin();
    Timeline const timeline{
        .files = {"KZEB.log"},
        .lines = {{.message = "other", .number = 9}},
        .marks = {
            {.lane = Lane::Platform, .time = begin, .name = "push"},
            {.lane = Lane::App, .time = begin + 2ms, .name = "a line", .outcome = LaneOutcome::Failed, .line = 0}}};
    EXPECT_EQ(EventsOf(timeline, "i"), Json::parse(R"([
        {"ph":"i","name":"push","pid":1,"tid":0,"cat":"event","ts":0,"s":"t","args":{"outcome":"neutral"}},
        {"ph":"i","name":"a line","pid":2,"tid":0,"cat":"line","ts":2000,"s":"t",
         "args":{"outcome":"failed","message":"other","file":"KZEB.log","line":9}}])"));
}

TEST(TraceEvents, GivesOverlappingSpansThreadsOfTheirOwn)
{
    Timeline const timeline{.spans = {Span(0ms, 10ms), Span(5ms, 20ms), Span(10ms, 15ms), Span(0ms, 9ms, Lane::App)}};
    auto const events = EventsOf(timeline, "X");
    EXPECT_EQ(ValuesOf(events, "ts"), Json::array({0, 0, 5000, 10000}));
    EXPECT_EQ(ValuesOf(events, "pid"), Json::array({3, 2, 3, 3}));
    EXPECT_EQ(ValuesOf(events, "tid"), Json::array({1, 1, 2, 1}));
}

TEST(TraceEvents, LetsASpanWithoutAnEndLastAsLongAsTheTrace)
{
    Timeline const timeline{.spans = {Span(0ms, {})}, .marks = {{.time = test::SampleBegin() + 30ms, .name = "last"}}};
    auto const event = EventsOf(timeline, "X").at(0);
    EXPECT_EQ(event["dur"], 30'000);
    EXPECT_EQ(event["args"]["end"], "not seen");
}

TEST(TraceEvents, GivesNoDurationToASpanDuringWhichTheClockWasSetBack)
{
    auto const event = EventsOf({.spans = {Span(10ms, 4ms)}}, "X").at(0);
    EXPECT_EQ(event["dur"], 0);
    EXPECT_EQ(event["ts"], 6000); // from its end, the earliest time
}

TEST(TraceEvents, ColoursFailedSpans)
{
    auto failed = Span(0ms, 1ms);
    failed.outcome = LaneOutcome::Failed;
    auto const events = EventsOf({.spans = {Span(0ms, 1ms), failed}}, "X");
    EXPECT_FALSE(events[0].contains("cname"));
    EXPECT_EQ(events[1]["cname"], "terrible");
}

TEST(TraceEvents, NamesLanesAndThreads)
{
    Json lanes, threads;
    for (auto const& event : EventsOf({.spans = {Span(0ms, 10ms), Span(5ms, 20ms)}}, "M"))
    {
        auto& names = event["name"] == "process_name" ? lanes : threads;
        if (event["name"] != "process_sort_index")
        {
            names.push_back({event["pid"], event["tid"], event["args"]["name"]});
        }
        else
        {
            EXPECT_EQ(event["args"]["sort_index"], event["pid"].get<int>() - 1);
        }
    }
    EXPECT_EQ(lanes, Json::parse(R"([[1,0,"platform"],[2,0,"app"],[3,0,"service"],[4,0,"helper"],
                                    [5,0,"desktop component"]])"));
    EXPECT_EQ(threads, Json::parse(R"([[1,0,"marks"],[2,0,"marks"],[3,0,"marks"],[3,1,"spans"],[3,2,"spans"],
                                      [4,0,"marks"],[5,0,"marks"]])"));
}

TEST(TraceEvents, AreValidWithoutSpansAndMarks)
{
    auto const trace = TraceOf({});
    EXPECT_EQ(trace["displayTimeUnit"], "ms");
    EXPECT_EQ(EventsOf({}, "X").size() + EventsOf({}, "i").size(), 0u);
}

TEST(TraceEvents, ReplaceBytesThatAreNoText)
{
    Timeline const timeline{.marks = {{.time = test::SampleBegin(), .name = "a\xFF"}}};
    EXPECT_EQ(EventsOf(timeline, "i").at(0)["name"], "a\uFFFD");
}

TEST(TraceEvents, RefuseAnIndexBeyondTheLinesBeforeTheyAreWritten)
{
    auto pieces = 0;
    Timeline const timeline{.marks = {{.time = test::SampleBegin(), .name = "mark", .line = 0}}};
    EXPECT_THROW(WriteTraceEvents(timeline, [&](std::string_view) { ++pieces; }), std::out_of_range);
    EXPECT_EQ(pieces, 0);
}
