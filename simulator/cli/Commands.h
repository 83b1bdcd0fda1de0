#pragma once
#include "simulator/client/Command.h"

#include <span>

namespace sim
{

// What this program does itself, giving the exit code; what a device does for it is in client/DeviceCommands.h. They
// throw Error, and WrongCall.
using OwnCommand = Command<int (*)(Words const& arguments)>;

std::span<OwnCommand const> OwnCommands();

// Runs the command that the words name: 0 when it went well, 1 when it did not, 2 when it was called wrongly.
int RunCommand(Words const& words);

} // namespace sim
