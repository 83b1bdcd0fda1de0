#pragma once
#include <cstdint>

namespace sim
{

// The source of all time in the platform: the system, or a test. Any thread.
class TimeSource
{
  public:
    virtual ~TimeSource() = default;

    // UTC, in units of 100 ns since 1601. It may be set back.
    virtual std::int64_t Utc() const = 0;

    // Monotonic, in milliseconds.
    virtual std::uint64_t Ticks() const = 0;
};

} // namespace sim
