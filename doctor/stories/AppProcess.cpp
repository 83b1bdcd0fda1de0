#include "doctor/stories/AppProcess.h"

#include <algorithm>

namespace doctor
{

namespace
{

// Stories of one group share ends: such a line ends one of them. A channel arrives for one request, and what fails
// behind it is a step of that one.
bool IsSameGroup(Story const& one, Story const& other)
{
    auto const isStep = [](Story const& story) {
        return story.kind == StoryKind::Step || story.kind == StoryKind::Channel;
    };
    return one.kind == other.kind || (isStep(one) && isStep(other));
}

using StoriesByBegin = std::array<std::vector<Story const*>, static_cast<std::size_t>(Line::Withheld) + 1>;

StoriesByBegin ByBegin()
{
    StoriesByBegin result;
    for (auto const& story : Stories())
    {
        result.at(static_cast<std::size_t>(story.begin)).push_back(&story);
    }
    return result;
}

} // namespace

void AppProcess::Add(LogPlace const& place, std::uint32_t thread)
{
    m_last = place;
    m_threads.insert(thread);
    m_wroteBesideSuccessor = m_wroteBesideSuccessor || IsSuperseded();
    if (place.line == Line::Other)
    {
        return;
    }
    std::vector<Story const*> ended;
    EndStories(place, thread, Scope::Thread, ended);
    EndStories(place, thread, Scope::Process, ended);
    BeginStories(place, thread);
}

bool AppProcess::Awaits(Line line, std::uint32_t thread) const
{
    return std::ranges::any_of(m_open, [&](Open const& open) { return Ends(open, line, thread); });
}

bool AppProcess::Ends(Open const& open, Line line, std::uint32_t thread) const
{
    return EndOf(*open.story, line) && (open.story->scope == Scope::Process || open.thread == thread);
}

void AppProcess::EndStories(LogPlace const& place, std::uint32_t thread, Scope scope, std::vector<Story const*>& ended)
{
    std::erase_if(m_open, [&](Open const& open) {
        auto const isDone = [&](Story const* story) { return IsSameGroup(*story, *open.story); };
        if (open.story->scope != scope || !Ends(open, place.line, thread) || std::ranges::any_of(ended, isDone))
        {
            return false;
        }
        ended.push_back(open.story);
        Tell(open, Ending::Ended, place, EndOf(*open.story, place.line));
        return true;
    });
}

void AppProcess::BeginStories(LogPlace const& place, std::uint32_t thread)
{
    static StoriesByBegin const stories = ByBegin();
    for (auto const* story : stories.at(static_cast<std::size_t>(place.line)))
    {
        auto const deadline = story->limit.count() == 0 ? LogTime::max() : place.time + story->limit;
        m_open.push_back({story, place, thread, deadline});
    }
    if (m_open.size() > mostOpen)
    {
        m_open.erase(m_open.begin(), m_open.end() - mostOpen);
    }
}

void AppProcess::Supersede(LogPlace const& banner)
{
    if (!m_successor)
    {
        m_successor = banner;
    }
}

Ending AppProcess::EndingOfOverdue() const
{
    if (!IsSuperseded())
    {
        return Ending::Overdue;
    }
    return m_wroteBesideSuccessor ? Ending::FellSilent : Ending::ProcessEnded;
}

void AppProcess::Expire(LogTime now)
{
    std::erase_if(m_open, [&](Open const& open) {
        if (open.deadline >= now)
        {
            return false;
        }
        Tell(open, EndingOfOverdue(), m_successor);
        return true;
    });
}

void AppProcess::Shift(std::chrono::milliseconds change)
{
    for (auto& open : m_open)
    {
        open.deadline += open.deadline == LogTime::max() ? std::chrono::milliseconds() : change;
    }
}

LogTime AppProcess::NextDeadline() const
{
    auto const earliest = std::ranges::min_element(m_open, {}, &Open::deadline);
    return earliest == m_open.end() ? LogTime::max() : earliest->deadline;
}

void AppProcess::End(std::optional<LogTime> asOf)
{
    auto const isLimited = [](Open const& open) { return open.deadline != LogTime::max(); };
    auto const isOver = [&](Open const& open) { return isLimited(open) && (!asOf || open.deadline < *asOf); };
    auto const isGone =
        std::ranges::any_of(m_open, [&](Open const& open) { return open.story->isCertain && isOver(open); });
    for (auto const& open : m_open)
    {
        if (!isLimited(open))
        {
            continue;
        }
        auto const overdue = isGone ? Ending::ProcessEnded : EndingOfOverdue();
        Tell(open, IsSuperseded() || isGone || isOver(open) ? overdue : Ending::LogEnds, m_successor);
    }
    for (auto const& open : m_open)
    {
        if (!isLimited(open))
        {
            auto const breaks = m_isBroken && open.story->kind == StoryKind::Process;
            Tell(open, breaks ? Ending::ProcessEnded : Ending::Unlimited, breaks ? m_successor : m_last);
        }
    }
    m_open.clear();
}

void AppProcess::Tell(Open const& open, Ending ending, std::optional<LogPlace> const& last, StoryEnd const* end)
{
    m_isBroken = m_isBroken || ending == Ending::ProcessEnded;
    (*m_take)({open.story, ending, end, open.begin, last});
}

} // namespace doctor
