#pragma once
#include "simulator/client/Command.h"

namespace sim
{

// sim doctor [--json]: what works on the device and what does not, then what the app's log tells. The exit code is 1
// when something on the device failed. Throws Error.
int RunDoctor(Words const& words);

} // namespace sim
