#pragma once
#include "simulator/platform/StateFile.h"
#include "simulator/platform/TimeSource.h"

#include <cstdint>
#include <string>

namespace sim
{

// The device's clock: the time source's time plus all advances. Saved on the device, so that timers keep their due
// times across a restart.
class Clock
{
  public:
    // Times and durations are in units of 100 ns, times since 1601 in UTC.
    static constexpr std::int64_t minute = 60LL * 10'000'000;

    // time: outlives this.
    Clock(StateFile file, TimeSource const& time);

    std::int64_t Now() const;

    // All advances.
    std::int64_t MinutesAhead() const noexcept { return m_minutesAhead; }

    // minutes: above 0. Throws Error when it cannot be saved, or for more than a thousand years in all.
    void Advance(std::int64_t minutes);

    // Display text: the local time.
    std::wstring Text() const { return Text(Now()); }

    static std::wstring Text(std::int64_t time);

  private:
    StateFile m_file;
    TimeSource const& m_time;
    std::int64_t m_minutesAhead = 0;
};

} // namespace sim
