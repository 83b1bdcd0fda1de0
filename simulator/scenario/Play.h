#pragma once
#include "simulator/protocol/Device.h"
#include "simulator/scenario/Timeline.h"

#include <string>

namespace sim
{

// Plays a scenario file and says at the end what was checked. False when anything was other than the scenario says;
// then it says what. Throws Error when the scenario cannot be played.
bool PlayScenario(std::wstring const& path, Device const& device, Colour colour);

} // namespace sim
