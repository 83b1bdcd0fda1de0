#pragma once
#include "simulator/client/Command.h"
#include "simulator/protocol/Requests.h"

#include <span>

namespace sim
{

// A command that a person or a scenario gives to a device: makes its request from the arguments.
using DeviceCommand = Command<AnyRequest (*)(Words const& arguments)>;

std::span<DeviceCommand const> DeviceCommands();

// The request of a command; its name is the first word. Throws UsageError for an unknown command and for wrong
// arguments.
AnyRequest RequestFor(Words const& words);

} // namespace sim
