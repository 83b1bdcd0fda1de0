#pragma once
#include "doctor/verdict/Finding.h"
#include "simulator/protocol/DeviceState.h"
#include "simulator/protocol/Event.h"

#include <optional>
#include <string>
#include <vector>

namespace sim
{

// What is known of a device.
struct Examined
{
    DeviceState state;
    std::optional<std::wstring> storedUri; // of the channel, in the app's settings
    std::vector<Event> journal;
    std::vector<unsigned long> leftOver; // processes that run and are none of the platform's
};

// What of it works and what does not, in the order of the stages.
std::vector<doctor::Finding> Examine(Examined const& examined);

// Whether both tasks are registered, each once.
std::vector<doctor::Finding> RegistrationFindings(WakeState const& tasks);

// The channel, and the URI in the app's settings.
std::vector<doctor::Finding> ChannelFindings(Examined const& examined);

// What waits, and what holds it back.
std::vector<doctor::Finding> HeldBackFindings(WakeState const& tasks);

// The clock, and the next timer.
doctor::Finding ClockFinding(DeviceState const& state);

// Processes.
doctor::Finding ProcessFinding(Examined const& examined);

} // namespace sim
