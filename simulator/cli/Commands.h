#pragma once
#include "simulator/client/Command.h"

#include <span>

namespace sim
{

// A command that this program executes itself: returns the exit code, throws Error or UsageError. Those that a device
// executes are in client/DeviceCommands.h.
using OwnCommand = Command<int (*)(Words const& arguments)>;

std::span<OwnCommand const> OwnCommands();

// Runs the command that the words name: 0 on success, 1 on failure, 2 when its arguments are wrong.
int RunCommand(Words const& words);

} // namespace sim
