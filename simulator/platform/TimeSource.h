#pragma once
#include <cstdint>

namespace sim
{

// Where the platform has all its time from: the system, or a test. From any thread.
class TimeSource
{
  public:
    virtual ~TimeSource() = default;

    // In units of 100 ns since 1601, UTC. It may be set back.
    virtual std::int64_t Utc() const = 0;

    // In milliseconds since some start. It never goes back.
    virtual std::uint64_t Ticks() const = 0;
};

} // namespace sim
