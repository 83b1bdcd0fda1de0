#pragma once
#include "doctor/timeline/TimelineFiles.h"
#include "simulator/protocol/Device.h"
#include "simulator/scenario/Timeline.h"

#include <string>

namespace sim
{

struct PlayOptions
{
    Colour colour = Colour::No;
    bool hasVerdict = false; // the doctor's, at the end
    doctor::TimelineFiles files;
};

// Plays a scenario file and reports what was checked. False after the first difference from the scenario, which is
// reported. Throws Error when the scenario cannot be played.
bool PlayScenario(std::wstring const& path, Device const& device, PlayOptions const& options);

} // namespace sim
