#pragma once
#include "simulator/protocol/Device.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace sim
{

// The interval at which the app's log is looked at. Under Wine, folder watches miss changes in folders that are created
// after the watch began.
constexpr unsigned logPollMilliseconds = 20;

// The log file of the device's registered package. Throws Error when none is registered.
std::wstring AppLogOn(Device const& device);

// Extends a log to that size without adding a line: simulates long use. Throws Error.
void GrowLogTo(std::wstring const& path, std::uint64_t bytes);

// Whether a text of a log is of what GrowLogTo adds.
bool IsGrowth(std::string_view text);

} // namespace sim
