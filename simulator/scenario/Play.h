#pragma once
#include "simulator/protocol/Device.h"
#include "simulator/scenario/Timeline.h"

#include <string>

namespace sim
{

// Plays a scenario file and says at the end what was checked. False when anything was other than the scenario says;
// then it says what. Throws Error when the scenario cannot be played.
bool PlayScenario(std::wstring const& path, Device const& device, Colour colour);

// Plays the steps that a person gives, each a line of the standard input, and writes them with all that comes of them
// as a scenario. False when something still runs at the end. Throws Error.
bool RecordScenario(std::wstring const& path, Device const& device, Colour colour);

// Each step of the language in a line, for people.
std::wstring ScenarioSteps();

} // namespace sim
