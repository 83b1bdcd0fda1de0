#include "simulator/scenario/Observer.h"

#include "simulator/base/Text.h"

#include <algorithm>

namespace sim
{

Observer::Observer(BrokerClient& broker, Helpers& helpers, Timeline& timeline)
    : m_broker(broker), m_helpers(helpers), m_timeline(timeline)
{
    m_broker.Follow();
}

void Observer::WatchLog(std::wstring const& path)
{
    m_log.emplace(path);
    m_logWatch.emplace(path);
}

bool Observer::WaitUntil(std::function<bool()> const& done, unsigned limitMilliseconds)
{
    auto const end = Now() + limitMilliseconds;
    for (;;)
    {
        Collect();
        m_timeline.ShowSettled();
        if (done())
        {
            return true;
        }
        auto const left = end - Now();
        if (left <= 0)
        {
            return false;
        }
        WaitForMore(static_cast<unsigned>(left));
    }
}

void Observer::Collect()
{
    while (auto event = m_broker.NextEvent())
    {
        Sort(std::move(*event));
    }
    CollectHelpers();
    CollectLog();
}

void Observer::CollectHelpers()
{
    while (auto said = m_helpers.Take())
    {
        auto const text = said->exitCode ? L"ends with " + std::to_wstring(*said->exitCode) : said->line;
        m_timeline.Add(said->time, Timeline::Source::Helper, said->name.empty() ? text : said->name + L" " + text);
        auto& lines = helperLines[said->name];
        lines.push_back(std::move(*said));
    }
}

void Observer::CollectLog()
{
    if (!m_log)
    {
        return;
    }
    for (auto& text : m_log->NewLines())
    {
        auto const line = ParseLogLine(text);
        m_timeline.Add(line ? line->time : Now(), Timeline::Source::Log,
                       line ? line->level + L" " + line->category + L": " + line->message : text);
        logLines.push_back(std::move(text));
    }
}

void Observer::Sort(Event event)
{
    constexpr std::wstring_view ends[] = {L"app-exited", L"app-crashed", L"app-terminated", L"app-start-failed"};
    auto const isEnd = std::ranges::find(ends, event.kind) != std::end(ends);
    m_isAppOver = isEnd || (m_isAppOver && event.kind != L"app-started");
    auto const isDesktop = StartsWith(event.kind, L"desktop-");
    m_timeline.Add(event.time, isDesktop ? Timeline::Source::Desktop : Timeline::Source::Event, event.Text());
    (isDesktop ? desktopEvents : platformEvents).push_back(std::move(event));
}

void Observer::WaitForMore(unsigned limitMilliseconds)
{
    HANDLE const handles[] = {m_broker.Arrived(), m_helpers.Arrived(), m_logWatch ? m_logWatch->Get() : nullptr};
    // Not longer than what is held back for order may wait.
    auto const wait =
        m_timeline.IsHolding() ? std::min(limitMilliseconds, Timeline::holdMilliseconds) : limitMilliseconds;
    auto const signalled = WaitForMultipleObjects(m_logWatch ? 3 : 2, handles, FALSE, wait);
    if (m_logWatch && signalled == WAIT_OBJECT_0 + 2)
    {
        m_logWatch->Next();
    }
}

} // namespace sim
