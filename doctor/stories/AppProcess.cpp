#include "doctor/stories/AppProcess.h"

#include <algorithm>
#include <utility>

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
    auto const pause = place.time - m_last.time;
    m_last = place;
    if (m_threads.size() == mostThreads)
    {
        m_threads.clear();
        m_threadsBesideSuccessor.clear();
    }
    m_threads.insert(thread);
    if (IsSuperseded())
    {
        m_threadsBesideSuccessor.insert(thread);
    }
    if (place.line == Line::Other)
    {
        return;
    }
    if (EndStories(place, thread))
    {
        Shift(pause); // the machine slept: nothing could end meanwhile
    }
    BeginStories(place, thread);
}

bool AppProcess::Awaits(Line line, std::uint32_t thread) const
{
    return std::ranges::any_of(m_open, [&](Open const& open) { return Ends(open, line, thread); });
}

bool AppProcess::Ends(Open const& open, Line line, std::uint32_t thread) const
{
    return EndOf(*open.story, line) != nullptr && (open.story->scope == Scope::Process || open.thread == thread);
}

// True when one of them was overdue.
bool AppProcess::EndStories(LogPlace const& place, std::uint32_t thread)
{
    auto wasOverdue = false;
    auto exits = false;
    std::vector<Story const*> ended;
    for (auto const scope : {Scope::Thread, Scope::Process})
    {
        std::erase_if(m_open, [&](Open const& open) {
            auto const isDone = [&](Story const* story) { return IsSameGroup(*story, *open.story); };
            if (open.story->scope != scope || !Ends(open, place.line, thread) || std::ranges::any_of(ended, isDone))
            {
                return false;
            }
            ended.push_back(open.story);
            wasOverdue = wasOverdue || open.deadline < place.time;
            exits = exits || open.story->kind == StoryKind::Process;
            Tell(open, Ending::Ended, place, EndOf(*open.story, place.line));
            return true;
        });
    }
    if (exits)
    {
        Exit(place);
    }
    return wasOverdue;
}

// What is open has a moment left.
void AppProcess::Exit(LogPlace const& place)
{
    constexpr std::chrono::seconds last{5};
    m_exit = place;
    for (auto& open : m_open)
    {
        open.isCut = true;
        open.deadline = open.deadline == LogTime::max() ? open.deadline : std::min(open.deadline, place.time + last);
    }
}

void AppProcess::BeginStories(LogPlace const& place, std::uint32_t thread)
{
    static StoriesByBegin const stories = ByBegin();
    for (auto const* story : stories.at(static_cast<std::size_t>(place.line)))
    {
        auto const deadline = story->limit.count() == 0 ? LogTime::max() : place.time + story->limit;
        // The line that ends a launch ends the newest: an older one was refused.
        auto const isNewestFirst = story->kind == StoryKind::Launch || story->kind == StoryKind::Task;
        m_open.insert(isNewestFirst ? m_open.begin() : m_open.end(), {story, place, thread, deadline});
    }
    while (m_open.size() > mostOpen)
    {
        DropOldest();
    }
}

// The process itself stays.
void AppProcess::DropOldest()
{
    m_open.erase(std::ranges::min_element(m_open, {}, [](Open const& open) {
        return std::pair(open.story->kind == StoryKind::Process, open.begin.time);
    }));
}

void AppProcess::Supersede(LogPlace const& banner)
{
    if (IsSuperseded())
    {
        return;
    }
    TellWhatIsOver(banner.time, IsGone(banner.time), banner);
    m_successor = banner;
}

// A story that the app ends in any case as long as it lives has no end by then; nothing: by whenever.
bool AppProcess::IsGone(std::optional<LogTime> now) const
{
    return std::ranges::any_of(
        m_open, [&](Open const& open) { return open.story->isCertain && (!now || open.deadline < *now); });
}

Ending AppProcess::EndingOfOverdue(Open const& open, bool isGone) const
{
    if (open.isCut)
    {
        // What is launched needs the app no more.
        return open.story->kind == StoryKind::Launch ? Ending::Overdue : Ending::Exited;
    }
    if (!m_threadsBesideSuccessor.empty())
    {
        return Ending::FellSilent;
    }
    return isGone || IsSuperseded() ? Ending::ProcessEnded : Ending::Overdue;
}

void AppProcess::TellOverdue(Open const& open, bool isGone, std::optional<LogPlace> const& successor)
{
    auto const ending = EndingOfOverdue(open, isGone);
    auto const& last = ending == Ending::Exited ? m_exit : successor;
    Tell(open, ending, ending == Ending::Overdue ? std::nullopt : last);
}

void AppProcess::TellWhatIsOver(LogTime now, bool isGone, std::optional<LogPlace> const& successor)
{
    std::erase_if(m_open, [&](Open const& open) {
        auto const isOver = open.deadline < now;
        if (isOver)
        {
            TellOverdue(open, isGone, successor);
        }
        return isOver;
    });
}

void AppProcess::Expire(LogTime now)
{
    TellWhatIsOver(now, false, m_successor);
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
    auto const isGone = IsGone(asOf);
    for (auto const& open : m_open)
    {
        if (isLimited(open))
        {
            auto const isOver = IsSuperseded() || isGone || !asOf || open.deadline < *asOf;
            isOver ? TellOverdue(open, isGone, m_successor) : Tell(open, Ending::LogEnds, std::nullopt);
        }
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
