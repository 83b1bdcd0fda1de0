#pragma once
#include "doctor/stories/Remark.h"

#include <optional>

namespace doctor
{

// More than a day, with an hour of tolerance, since the timer was registered or came last. A machine that was off gets
// it soon after its start.
class TimerWatch
{
  public:
    static constexpr std::chrono::hours mostWait{25};
    static constexpr std::chrono::minutes mostLate{15};

    void Add(LogPlace const& place, TakeRemark const& take);

    // `asOf` as for StoryTracker::End.
    void End(std::optional<LogTime> asOf, TakeRemark const& take);

  private:
    void Tell(TakeRemark const& take);

    std::optional<LogPlace> m_armed;
    std::optional<LogPlace> m_late; // the first line after the wait
    LogPlace m_last;
};

} // namespace doctor
