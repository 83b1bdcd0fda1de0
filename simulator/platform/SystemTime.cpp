#include "simulator/platform/SystemTime.h"

#include <windows.h>

namespace sim
{

std::int64_t SystemTime::Utc() const
{
    FILETIME time;
    GetSystemTimeAsFileTime(&time);
    return (static_cast<std::int64_t>(time.dwHighDateTime) << 32) | time.dwLowDateTime;
}

std::uint64_t SystemTime::Ticks() const
{
    return GetTickCount64();
}

} // namespace sim
