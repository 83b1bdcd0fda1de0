#pragma once
#include "simulator/protocol/Device.h"
#include "simulator/scenario/Timeline.h"

#include <string>

namespace sim
{

// Plays a scenario file and reports what was checked. False after the first difference from the scenario, which is
// reported. Throws Error when the scenario cannot be played.
bool PlayScenario(std::wstring const& path, Device const& device, Colour colour);

} // namespace sim
