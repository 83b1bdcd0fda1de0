#include "simulator/scenario/PlayTimeline.h"

#include "doctor/log/ChannelUri.h"
#include "simulator/base/Text.h"
#include "simulator/log/AppLog.h"

#include <algorithm>
#include <map>

namespace sim
{

namespace
{

using doctor::LaneOutcome;

// What lasts, from an event to one of others that have the same detail.
struct Lasting
{
    std::wstring_view begin;
    std::wstring_view detail; // empty: there is one at a time
    std::string_view name;
    std::array<std::wstring_view, 3> ends;
};

constexpr Lasting lastings[] = {
    {L"app-started", L"", "app process", {L"app-exited", L"app-terminated", L"app-crashed"}},
    {L"task-started", L"instance", "task instance", {L"task-completed", L"task-lost"}},
    {L"app-service-opened", L"connection", "app service connection", {L"app-service-closed"}},
    {L"desktop-started", L"pid", "desktop component", {L"desktop-exited"}},
    {L"helper-started", L"name", "helper", {L"helper-exited", L"helper-killed"}},
};

constexpr std::wstring_view failures[] = {
    L"activation-lost", L"app-crashed", L"app-start-failed", L"broker-lost",  L"desktop-not-started", L"device-failed",
    L"fault",           L"page-failed", L"push-lost",        L"task-overdue", L"unhandled-exception"};

bool IsFailure(Event const& event)
{
    auto const hasExited = event.kind.ends_with(L"-exited");
    return std::ranges::find(failures, event.kind) != std::end(failures) ||
           (hasExited && event.Detail(L"code") != L"0");
}

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

class Spans
{
  public:
    explicit Spans(std::vector<doctor::TimelineSpan>& spans) : m_spans(spans) {}

    // Begins the span that the event begins, or ends the one that it ends.
    void Add(doctor::Lane lane, Event const& event)
    {
        for (auto const& lasting : lastings)
        {
            Key const key(&lasting, event.Detail(lasting.detail).value_or(L""));
            if (event.kind == lasting.begin)
            {
                m_open[key] = m_spans.size();
                m_spans.push_back({.lane = lane,
                                   .name = std::string(lasting.name),
                                   .begin = LogTimeOf(event.time),
                                   .outcome = LaneOutcome::Open,
                                   .detail = ShownText(event.Text())});
            }
            else if (std::ranges::find(lasting.ends, event.kind) != lasting.ends.end())
            {
                if (auto const open = m_open.extract(key))
                {
                    End(m_spans[open.mapped()], event);
                }
            }
        }
    }

  private:
    using Key = std::pair<Lasting const*, std::wstring>;

    static void End(doctor::TimelineSpan& span, Event const& event)
    {
        span.end = LogTimeOf(event.time);
        span.outcome = IsFailure(event) ? LaneOutcome::Failed : LaneOutcome::Neutral;
        span.detail += ShownText(L" … " + event.Text());
    }

    std::vector<doctor::TimelineSpan>& m_spans;
    std::map<Key, std::size_t> m_open; // their indexes
};

} // namespace

void AddPlayed(doctor::Timeline& timeline, std::span<Timeline::Item const> items)
{
    Spans spans(timeline.spans);
    for (auto const& item : items)
    {
        if (item.source == Timeline::Source::Log)
        {
            continue;
        }
        auto const isFailure = item.event && IsFailure(*item.event);
        timeline.marks.push_back({.lane = LaneOf(item.source),
                                  .time = LogTimeOf(item.time),
                                  .name = ShownText(item.text),
                                  .outcome = isFailure ? LaneOutcome::Failed : LaneOutcome::Neutral});
        if (item.event)
        {
            spans.Add(LaneOf(item.source), *item.event);
        }
    }
}

} // namespace sim
