#pragma once
#include "simulator/platform/TimeSource.h"

#include <windows.h>

namespace sim
{

class SystemTime : public TimeSource
{
  public:
    std::int64_t Utc() const override
    {
        FILETIME time;
        GetSystemTimeAsFileTime(&time);
        return (static_cast<std::int64_t>(time.dwHighDateTime) << 32) | time.dwLowDateTime;
    }

    std::uint64_t Ticks() const override { return GetTickCount64(); }
};

} // namespace sim
