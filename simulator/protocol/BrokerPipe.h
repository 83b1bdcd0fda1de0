#pragma once
#include "simulator/base/Handle.h"
#include "simulator/protocol/Device.h"

#include <string>

namespace sim
{

// The pipe to the broker that serves the device. No handle when none does. Throws Error when it hangs.
Handle FindBroker(Device const& device);

// The same, but starts a broker when none serves the device. program: sim.exe. Throws Error.
Handle NeedBroker(Device const& device, std::wstring const& program);

// The error message for a broker that hangs. id: of its process; 0 if unknown.
std::wstring HungText(unsigned long id);

} // namespace sim
