#pragma once
#include "doctor/verdict/Report.h"
#include "simulator/protocol/Device.h"

#include <string>

namespace sim
{

// What the doctor finds in the logs of the device's registered package, to which nothing writes any more. A report
// without files when there is no log.
doctor::Report LogReport(Device const& device);

// In a scenario's words: "worked", "not-seen", "failed channel exit".
std::wstring VerdictText(doctor::Report const& report);

} // namespace sim
