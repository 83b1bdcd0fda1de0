#pragma once
#include "simulator/platform/StateFile.h"
#include "simulator/platform/TimeSource.h"

#include <cstdint>
#include <string>

namespace sim
{

// The clock of the device: the time source's, and all that it was put forward. Kept on the device, so that what was to
// happen in a day stays due when the device is switched on again.
class Clock
{
  public:
    // A time and a duration: 100 ns, times since 1601 in UTC.
    static constexpr std::int64_t minute = 60LL * 10'000'000;

    // time: outlives this.
    Clock(StateFile file, TimeSource const& time);

    std::int64_t Now() const;

    // Only forward: minutes is above 0. Throws Error when it cannot be kept, or is too far: more than a thousand years
    // in all.
    void Advance(std::int64_t minutes);

    // The time that it shows, for people: local.
    std::wstring Text() const { return Text(Now()); }

    static std::wstring Text(std::int64_t time);

  private:
    StateFile m_file;
    TimeSource const& m_time;
    std::int64_t m_minutesAhead = 0;
};

} // namespace sim
