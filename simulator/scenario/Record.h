#pragma once
#include "simulator/protocol/Device.h"
#include "simulator/scenario/Timeline.h"

#include <string>

namespace sim
{

// Plays the steps that a person types, one per line of the standard input, and writes them and everything that follows
// from them as a scenario. False when something still runs at the end. Throws Error.
bool RecordScenario(std::wstring const& path, Device const& device, Colour colour);

} // namespace sim
