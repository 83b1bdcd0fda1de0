#pragma once
#include <chrono>

namespace bench
{

// Time that so many comparisons share: what one leaves over is the next ones'.
class TimeShares
{
  public:
    using TimePoint = std::chrono::steady_clock::time_point;
    using Duration = std::chrono::steady_clock::duration;

    TimeShares(TimePoint start, Duration all, int shares) : m_end(start + all), m_left(shares) {}

    // When a comparison that begins now is to end. At most as many as there are shares.
    TimePoint EndOfNext(TimePoint now) { return now + (m_end - now) / m_left--; }

  private:
    TimePoint m_end;
    int m_left;
};

} // namespace bench
