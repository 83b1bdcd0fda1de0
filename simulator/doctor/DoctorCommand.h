#pragma once
#include "simulator/client/Command.h"

namespace sim
{

// sim doctor [--json]: what works on the device and what does not, then what the app's log tells. The exit code is the
// doctor's, for what is found on the device. Throws Error.
int RunDoctor(Words const& words);

} // namespace sim
