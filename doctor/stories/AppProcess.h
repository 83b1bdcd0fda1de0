#pragma once
#include "doctor/stories/Told.h"

#include <cstdint>
#include <unordered_set>
#include <vector>

namespace doctor
{

// One process of the app as its lines show it, with the stories that it has begun and not ended. A log does not say
// which process wrote a line; StoryTracker guesses it.
class AppProcess
{
  public:
    // Of stories at a time. More are begun by no process that is sound; the oldest are dropped.
    static constexpr std::size_t mostOpen = 256;

    // Of threads that it is known by.
    static constexpr std::size_t mostThreads = 1024;

    AppProcess(LogPlace const& first, TakeTold const& take) : m_take(&take), m_last(first) {}

    // One more of its lines: ends stories, also such as are overdue, and begins others.
    void Add(LogPlace const& place, std::uint32_t thread);

    // The line would end one of its stories.
    bool Awaits(Line line, std::uint32_t thread) const;

    bool HasThread(std::uint32_t thread) const { return m_threads.contains(thread); }

    // The thread has written since the next process started: it is no other process's now.
    bool HasThreadBesideSuccessor(std::uint32_t thread) const { return m_threadsBesideSuccessor.contains(thread); }

    // The next process starts: ends the stories whose time is over by then.
    void Supersede(LogPlace const& banner);

    bool IsSuperseded() const { return m_successor.has_value(); }

    // Ends the stories whose time is over.
    void Expire(LogTime now);

    // The clock was set by that much: what is open is that much older or younger.
    void Shift(std::chrono::milliseconds change);

    // When the next story's time is over; LogTime::max() without one.
    LogTime NextDeadline() const;

    // No more lines come. What is open has ended; `asOf` is the time until which no line came, nothing: for good.
    void End(std::optional<LogTime> asOf);

  private:
    struct Open
    {
        Story const* story;
        LogPlace begin;
        std::uint32_t thread;
        LogTime deadline;
        bool isCut = false; // its process exited while it was open
    };

    bool Ends(Open const& open, Line line, std::uint32_t thread) const;
    bool EndStories(LogPlace const& place, std::uint32_t thread);
    void Exit(LogPlace const& place);
    void BeginStories(LogPlace const& place, std::uint32_t thread);
    void DropOldest();
    bool IsGone(std::optional<LogTime> now) const;
    Ending EndingOfOverdue(Open const& open, bool isGone) const;
    void TellOverdue(Open const& open, bool isGone, std::optional<LogPlace> const& successor);
    void TellWhatIsOver(LogTime now, bool isGone, std::optional<LogPlace> const& successor);
    void Tell(Open const& open, Ending ending, std::optional<LogPlace> const& last, StoryEnd const* end = nullptr);

    TakeTold const* m_take;
    std::vector<Open> m_open;
    std::unordered_set<std::uint32_t> m_threads;
    std::unordered_set<std::uint32_t> m_threadsBesideSuccessor;
    LogPlace m_last;
    std::optional<LogPlace> m_exit;      // the line before it exits by itself
    std::optional<LogPlace> m_successor; // the banner of the next process
    bool m_isBroken = false;             // one of its stories had no end since the process ended
};

} // namespace doctor
