#pragma once
#include "doctor/log/LogTime.h"
#include "simulator/base/Moment.h"

namespace sim
{

// Both are local times; one is counted from 1970, the other from 1601.
inline Moment MomentOf(doctor::LogTime time)
{
    return MomentOf(1970, 1, 1, 0, 0, 0, 0).value_or(0) + time.time_since_epoch().count();
}

inline doctor::LogTime LogTimeOf(Moment moment)
{
    return doctor::LogTime(std::chrono::milliseconds(moment - MomentOf(doctor::LogTime())));
}

} // namespace sim
