#pragma once
#include "doctor/stories/AppProcess.h"

#include <cstdint>
#include <list>

namespace doctor
{

// Follows the stories of a log from its first line to its last, and tells each one that ends. A log does not say which
// process wrote a line. The newest did, unless an earlier one knows the thread and waits for the line, or has already
// written on that thread beside the newest. The memory that it uses does not depend on the length of the log.
class StoryTracker
{
  public:
    // Lines of two threads can change places; each waits two seconds at most for the log's mutex.
    static constexpr std::chrono::milliseconds mostDisorder{5000};

    // Processes followed at a time. A log with more has lost what ended them; the oldest are dropped.
    static constexpr std::size_t mostProcesses = 16;

    // `take` is called while lines are added and at the end.
    explicit StoryTracker(TakeTold take) : m_take(std::move(take)) {}

    StoryTracker(StoryTracker const&) = delete;
    StoryTracker& operator=(StoryTracker const&) = delete;

    void Add(LogPlace const& place, std::uint32_t thread);

    // No more lines come; `asOf` is the local time until which none came. Nothing: none ever comes.
    void End(std::optional<LogTime> asOf);

  private:
    void Advance(LogTime time);
    void Expire();
    AppProcess& ProcessOf(LogPlace const& place, std::uint32_t thread);

    TakeTold m_take;
    std::list<AppProcess> m_processes; // the newest last
    LogTime m_now = LogTime::min();
};

} // namespace doctor
