#pragma once
#include "doctor/verdict/Report.h"
#include "simulator/protocol/Device.h"

#include <string>

namespace sim
{

// What the doctor finds in the logs of the device's registered package; `asOf`: when the device is looked at, nothing
// when nothing writes to them any more. A report without files when there is no log.
doctor::Report LogReport(Device const& device, std::optional<doctor::LogTime> asOf = std::nullopt);

// In a scenario's words: "worked", "not-seen", "failed channel exit".
std::wstring VerdictText(doctor::Report const& report);

} // namespace sim
