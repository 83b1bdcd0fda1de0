#include "doctor/stories/StoryTracker.h"

#include <algorithm>
#include <ranges>

namespace doctor
{

void StoryTracker::Add(LogPlace const& place, std::uint32_t thread)
{
    Advance(place.time);
    ProcessOf(place, thread).Add(place, thread);
    Expire();
}

void StoryTracker::Advance(LogTime time)
{
    if (m_now != LogTime::min() && time + mostDisorder < m_now)
    {
        for (auto& process : m_processes)
        {
            process.Shift(time - m_now);
        }
        m_now = time;
    }
    m_now = std::max(m_now, time);
}

void StoryTracker::Expire()
{
    for (auto& process : m_processes)
    {
        process.Expire(m_now);
    }
    // The one that is left is the newest, or waits for something.
    std::erase_if(m_processes, [](AppProcess& process) {
        auto const isOver = process.IsSuperseded() && process.NextDeadline() == LogTime::max();
        if (isOver)
        {
            process.End({});
        }
        return isOver;
    });
}

AppProcess& StoryTracker::ProcessOf(LogPlace const& place, std::uint32_t thread)
{
    if (place.line != Line::Started && !m_processes.empty())
    {
        auto& newest = m_processes.back();
        auto const isItsOwn = [&](AppProcess const& process) {
            return &process != &newest && (process.HasThreadBesideSuccessor(thread) ||
                                           (process.HasThread(thread) && process.Awaits(place.line, thread)));
        };
        auto const earlier = std::ranges::find_if(m_processes, isItsOwn);
        return newest.HasThread(thread) || earlier == m_processes.end() ? newest : *earlier;
    }
    for (auto& process : m_processes)
    {
        process.Supersede(place);
    }
    if (m_processes.size() == mostProcesses)
    {
        m_processes.front().End({});
        m_processes.pop_front();
    }
    return m_processes.emplace_back(place, m_take);
}

void StoryTracker::End(std::optional<LogTime> asOf)
{
    for (auto& process : m_processes)
    {
        process.End(asOf);
    }
    m_processes.clear();
}

} // namespace doctor
