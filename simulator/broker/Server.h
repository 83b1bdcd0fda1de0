#pragma once
#include "simulator/protocol/Device.h"

namespace sim
{

// Serves a device until it is switched off or its folder is removed. Returns at once when another process serves it.
// Throws Error.
void Serve(Device const& device);

} // namespace sim
