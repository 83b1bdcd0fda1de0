#pragma once
#include "doctor/show/Follow.h"
#include "simulator/base/Moment.h"
#include "simulator/protocol/Device.h"

#include <cstdint>
#include <functional>
#include <string>

namespace sim
{

// The interval at which the app's log is looked at. Under Wine, folder watches miss changes in folders that are created
// after the watch began.
constexpr unsigned logPollMilliseconds = 20;

// The log file of the device's registered package. Throws Error when none is registered.
std::wstring AppLogOn(Device const& device);

// Extends a log to that size without adding a line: simulates long use. Throws Error.
void GrowLogTo(std::wstring const& path, std::uint64_t bytes);

// Gives the lines completed since the last call, without what GrowLogTo adds. Throws Error.
void TakeNewLines(doctor::Follower& log, std::function<void(doctor::Entry const&)> const& take);

// The time of a line among those of the journal.
Moment MomentOf(doctor::LogTime time);

// The opposite.
doctor::LogTime LogTimeOf(Moment moment);

} // namespace sim
