#pragma once
#include "doctor/verdict/Finding.h"
#include "simulator/protocol/Device.h"
#include "simulator/protocol/Event.h"

#include <vector>

namespace sim
{

// What the doctor looks at on any machine, for the device's registered package: the app's log, the log's mutex, the
// desktop component's file. Throws Error when no package is registered.
std::vector<doctor::Finding> FileFindings(Device const& device, std::vector<Event> const& journal);

} // namespace sim
