#pragma once
#include "simulator/client/Command.h"
#include "simulator/protocol/Requests.h"

#include <span>

namespace sim
{

// What a person or a scenario asks of a device, in words: the request that the arguments stand for.
using DeviceCommand = Command<AnyRequest (*)(Words const& arguments)>;

std::span<DeviceCommand const> DeviceCommands();

// The request that the words stand for, the command's name first. Throws WrongCall when there is none of that name or
// the arguments make no sense.
AnyRequest RequestFor(Words const& words);

} // namespace sim
