#include "SampleTimelines.h"

#include <string>

using namespace doctor;
using namespace std::chrono;

namespace
{

constexpr std::string_view markup =
    R"(</script><script>window.broken = 1</script><img src=x onerror="window.broken = 2">)";

TimelineLine Line(milliseconds time, std::string message, std::size_t file, std::uint64_t number)
{
    return {.time = test::SampleBegin() + time,
            .level = zant::LogLevel::Info,
            .thread = 4660,
            .category = "ZEBMain",
            .message = std::move(message),
            .file = file,
            .number = number};
}

// A mark for each line of the app.
void MarkLines(Timeline& timeline, Lane lane)
{
    for (std::size_t index = 0; index < timeline.lines.size(); ++index)
    {
        auto const& line = timeline.lines[index];
        if (line.time)
        {
            timeline.marks.push_back({.lane = lane, .time = *line.time, .name = line.message, .line = index});
        }
    }
}

} // namespace

LogTime test::SampleBegin()
{
    return local_days(2024y / January / 5) + 9h + 30min;
}

Timeline test::SmallTimeline()
{
    auto const begin = SampleBegin();
    Timeline timeline{.title = "KZEB.log <b>bold</b>",
                      .summary = "The channel failed first, at 09:30:12 & only once.",
                      .verdicts = {{"start-up", Result::Worked, "both processes started"},
                                   {"channel", Result::Failed, std::string(markup)},
                                   {"push", Result::NotSeen, "no push arrived"},
                                   {"exit", Result::CannotBeTold, "the log ends before"}},
                      .files = {"C:\\logs\\KZEB 2024-01-05.log", "C:\\logs\\KZEB.log"}};
    constexpr auto linesOfFirst = 20U;
    for (auto index = 0U; index < 30; ++index)
    {
        auto const file = index < linesOfFirst ? std::size_t{0} : 1;
        auto const number = index < linesOfFirst ? index + 1 : index + 1 - linesOfFirst;
        timeline.lines.push_back(Line(index * 500ms, "step " + std::to_string(index), file, number));
    }
    timeline.lines[12].message = markup;
    timeline.lines[13] = {.message = "text in no format of the app", .number = 14};
    timeline.lines[24].level = zant::LogLevel::Error;
    timeline.lines[24].message = "no channel";
    MarkLines(timeline, Lane::App);
    timeline.marks.push_back({.lane = Lane::Platform, .time = begin + 1s, .name = "push arrived"});
    timeline.marks.push_back(
        {.lane = Lane::Desktop, .time = begin + 2s, .name = "started", .outcome = LaneOutcome::Worked});
    timeline.marks.push_back(
        {.lane = Lane::Service, .time = begin + 12s, .name = "refused", .outcome = LaneOutcome::Failed, .line = 24});
    timeline.spans = {
        {Lane::App, "process 1", begin, begin + 10s, LaneOutcome::Worked, "ended by itself", "start-up", {0, 1, 19}},
        {Lane::App, "process 2", begin + 5s, {}, LaneOutcome::Open, "no end in the log", "start-up", {20}},
        {Lane::Service, "request 1", begin + 10s, begin + 12s, LaneOutcome::Failed, "<i>refused</i>", "channel", {24}},
        {Lane::Helper, "connection", begin + 4s, begin + 14s, LaneOutcome::Neutral, "", "", {}},
        {Lane::Platform, "clock set back", begin + 18s, begin + 17s, LaneOutcome::Neutral, "", "", {}},
        {Lane::Platform, "device", begin, begin + 20s, LaneOutcome::Neutral, "", "", {}},
    };
    return timeline;
}

Timeline test::BusyTimeline()
{
    Timeline timeline{.title = "busy", .summary = "A day of a busy machine.", .files = {"C:\\logs\\KZEB.log"}};
    constexpr auto lineCount = 4000U;
    for (auto index = 0U; index < lineCount; ++index)
    {
        auto message = "Line " + std::to_string(index) + " says what happened, as long as the app's own lines are. ";
        timeline.lines.push_back(Line(index * milliseconds(24h) / lineCount, std::move(message), 0, index + 1));
    }
    MarkLines(timeline, Lane::App);
    constexpr auto spanCount = 1000;
    constexpr auto linesOfSpan = std::size_t{lineCount / spanCount};
    for (std::size_t index = 0; index < spanCount; ++index)
    {
        auto const first = index * linesOfSpan;
        auto const begin = *timeline.lines[first].time;
        timeline.spans.push_back({.lane = index % 2 == 0 ? Lane::Service : Lane::Helper,
                                  .name = "request " + std::to_string(index),
                                  .begin = begin,
                                  .end = begin + 100s,
                                  .outcome = LaneOutcome::Worked,
                                  .detail = "answered within its limit",
                                  .stage = "service opened",
                                  .lines = {first, first + 1, first + 2, first + 3}});
    }
    return timeline;
}

Timeline test::LongTimeline()
{
    Timeline timeline{.title = "long", .summary = "Ten days.", .files = {"KZEB.log"}};
    for (auto day = 0U; day < 10; ++day)
    {
        auto const begin = SampleBegin() + days(day);
        timeline.lines.push_back(Line(days(day), "day " + std::to_string(day), 0, day + 1));
        auto const outcome = day == 2 || day == 6 ? LaneOutcome::Failed : LaneOutcome::Worked;
        timeline.spans.push_back(
            {Lane::Service, "request of day " + std::to_string(day), begin, begin + 2s, outcome, "", "", {}});
    }
    MarkLines(timeline, Lane::App);
    return timeline;
}
