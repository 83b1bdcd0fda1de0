#pragma once
#include "doctor/verdict/Finding.h"
#include "simulator/protocol/DeviceState.h"
#include "simulator/protocol/Event.h"

#include <vector>

namespace sim
{

// How far the last push or timer came since the device was switched on: to an instance of the task, to the app's
// process, to the desktop component, to the task's end. The step at which it broke is the last finding. None for one
// that waits, which HeldBackFindings tells.
std::vector<doctor::Finding> LastWakeFindings(std::vector<Event> const& journal, DeviceState const& state);

} // namespace sim
