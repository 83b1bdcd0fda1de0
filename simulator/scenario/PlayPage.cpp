#include "simulator/scenario/PlayPage.h"

#include "doctor/base/Error.h"
#include "doctor/base/OutputFile.h"
#include "doctor/log/ChannelUri.h"
#include "doctor/timeline/LogTimeline.h"
#include "doctor/timeline/TimelinePage.h"
#include "simulator/base/Error.h"
#include "simulator/base/Files.h"
#include "simulator/base/Text.h"
#include "simulator/log/AppLog.h"
#include "simulator/protocol/Event.h"

#include <algorithm>

namespace sim
{

namespace
{

// What lasts on the platform, from an event to one of others that have the same detail.
struct Lasting
{
    std::wstring_view begin;
    std::wstring_view detail; // empty: there is one at a time
    std::string_view name;
    std::array<std::wstring_view, 3> ends;
    std::wstring_view failure; // the end that is one
};

constexpr Lasting lastings[] = {
    {L"app-started", L"", "app process", {L"app-exited", L"app-terminated", L"app-crashed"}, L"app-crashed"},
    {L"task-started", L"instance", "task instance", {L"task-completed", L"task-lost"}, L""},
    {L"app-service-opened", L"connection", "app service connection", {L"app-service-closed"}, L""},
};

constexpr std::wstring_view failures[] = {
    L"activation-lost", L"app-crashed", L"app-start-failed", L"broker-lost",  L"desktop-not-started", L"device-failed",
    L"fault",           L"page-failed", L"push-lost",        L"task-overdue", L"unhandled-exception"};

std::string ShownText(std::wstring const& text)
{
    return doctor::WithShortUris(ToUtf8(text));
}

doctor::Lane LaneOf(Timeline::Source source)
{
    switch (source)
    {
    case Timeline::Source::Desktop:
        return doctor::Lane::Desktop;
    case Timeline::Source::Helper:
        return doctor::Lane::Helper;
    default:
        return doctor::Lane::Platform;
    }
}

std::optional<Event> EventOf(Timeline::Item const& item)
{
    return item.source == Timeline::Source::Event ? ParseEvent(DateAndTimeText(item.time) + L" " + item.text)
                                                  : std::nullopt;
}

doctor::LaneOutcome OutcomeOf(std::optional<Event> const& event)
{
    auto const isFailure = event && std::ranges::find(failures, event->kind) != std::end(failures);
    return isFailure ? doctor::LaneOutcome::Failed : doctor::LaneOutcome::Neutral;
}

// The first event from `rest` on that ends what began.
std::optional<Event> EndOf(Lasting const& lasting, Event const& begin, std::span<Timeline::Item const> rest)
{
    for (auto const& item : rest)
    {
        auto const event = EventOf(item);
        if (event && std::ranges::find(lasting.ends, event->kind) != lasting.ends.end() &&
            (lasting.detail.empty() || event->Detail(lasting.detail) == begin.Detail(lasting.detail)))
        {
            return event;
        }
    }
    return std::nullopt;
}

void AddSpan(doctor::Timeline& timeline, Lasting const& lasting, Event const& begin,
             std::span<Timeline::Item const> rest)
{
    auto const end = EndOf(lasting, begin, rest);
    auto const isFailure = end && end->kind == lasting.failure;
    timeline.spans.push_back({.lane = doctor::Lane::Platform,
                              .name = std::string(lasting.name),
                              .begin = LogTimeOf(begin.time),
                              .end = end ? std::optional(LogTimeOf(end->time)) : std::nullopt,
                              .outcome = isFailure ? doctor::LaneOutcome::Failed : doctor::LaneOutcome::Neutral,
                              .detail = ShownText(begin.Text() + (end ? L" … " + end->Text() : L""))});
}

void AddSpans(doctor::Timeline& timeline, std::span<Timeline::Item const> items)
{
    for (std::size_t at = 0; at < items.size(); ++at)
    {
        for (auto const& lasting : lastings)
        {
            if (auto const event = EventOf(items[at]); event && event->kind == lasting.begin)
            {
                AddSpan(timeline, lasting, *event, items.subspan(at + 1));
            }
        }
    }
}

} // namespace

void WritePlayPage(std::wstring const& path, std::wstring const& title, Device const& device,
                   std::span<Timeline::Item const> items)
try
{
    std::filesystem::path const log = AppLogOn(device);
    auto timeline = FileExists(log)
                        ? doctor::TimelineOfLogs({log.parent_path()}, std::nullopt, ToUtf8(title), false).timeline
                        : doctor::Timeline{.title = ToUtf8(title), .summary = "The app has written no log."};
    for (auto const& item : items)
    {
        if (item.source != Timeline::Source::Log) // these it has
        {
            timeline.marks.push_back({.lane = LaneOf(item.source),
                                      .time = LogTimeOf(item.time),
                                      .name = ShownText(item.text),
                                      .outcome = OutcomeOf(EventOf(item))});
        }
    }
    AddSpans(timeline, items);
    doctor::OutputFile const page(path);
    WriteTimelinePage(timeline, [&](std::string_view piece) { page.Write(piece); });
}
catch (doctor::Error const& error)
{
    throw Error(FromUtf8(error.what()));
}

} // namespace sim
