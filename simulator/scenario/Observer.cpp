#include "simulator/scenario/Observer.h"

#include "simulator/base/Text.h"
#include "simulator/log/AppLog.h"

#include <algorithm>

namespace sim
{

Observer::Observer(BrokerClient& broker, Helpers& helpers, Timeline& timeline)
    : m_helpers(helpers), m_timeline(timeline)
{
    Follow(broker);
}

void Observer::Follow(BrokerClient& broker)
{
    m_broker = &broker;
    m_known = m_seen;
    m_broker->Follow();
}

void Observer::FollowLog(std::wstring const& path)
{
    m_log = &m_logs.try_emplace(path, path).first->second;
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
        if (Now() >= end)
        {
            return false;
        }
        WaitForSingleObject(m_broker->Arrived(), logPollMilliseconds);
    }
}

void Observer::Collect()
{
    while (auto event = m_broker->NextEvent())
    {
        if (m_known > 0)
        {
            --m_known;
            continue;
        }
        ++m_seen;
        Sort(std::move(*event));
    }
    CollectHelpers();
    CollectLog();
}

void Observer::CollectHelpers()
{
    for (auto& output : m_helpers.Take())
    {
        std::optional<Event> end;
        if (output.exitCode)
        {
            end = {Now(),
                   output.wasKilled ? L"helper-killed" : L"helper-exited",
                   {Detail(L"code", std::to_wstring(*output.exitCode))}};
        }
        AddHelper(output.name, output.Text(), std::move(end));
        helperLines[output.name].push_back(std::move(output));
    }
}

void Observer::HelperStarted(std::wstring const& name, std::wstring const& arguments)
{
    AddHelper(name, L"started", Event{Now(), L"helper-started", {Detail(L"arguments", arguments)}});
}

void Observer::AddHelper(std::wstring const& name, std::wstring const& text, std::optional<Event> event)
{
    if (event && !name.empty())
    {
        event->details.push_back(Detail(L"name", name));
    }
    m_timeline.Add({Now(), Timeline::Source::Helper, (name.empty() ? L"" : name + L" ") + text, std::move(event)});
}

void Observer::CollectLog()
{
    if (m_log)
    {
        TakeNewLines(*m_log, [this](doctor::Entry const& entry) { AddLogLine(entry); });
    }
}

void Observer::AddLogLine(doctor::Entry const& entry)
{
    auto const& line = entry.line;
    m_timeline.Add({line ? MomentOf(line->time) : Now(), Timeline::Source::Log,
                    line ? std::wstring(zant::LevelName(line->level)) + L" " + FromUtf8(line->category) + L": " +
                               FromUtf8(line->message)
                         : FromUtf8(entry.raw.text)});
    logLines.emplace_back(entry.raw.text);
}

void Observer::Sort(Event event)
{
    constexpr std::wstring_view ends[] = {L"app-exited", L"app-crashed", L"app-terminated", L"app-start-failed"};
    auto const isEnd = std::ranges::find(ends, event.kind) != std::end(ends);
    auto const isStart = event.kind == L"app-started";
    if (isStart || isEnd)
    {
        m_isAppRunning = isStart;
    }
    auto const isDesktop = event.kind.starts_with(L"desktop-");
    m_timeline.Add({event.time, isDesktop ? Timeline::Source::Desktop : Timeline::Source::Event, event.Text(), event});
    (isDesktop ? desktopEvents : platformEvents).push_back(std::move(event));
}

} // namespace sim
