#pragma once
#include "simulator/base/Handle.h"
#include "simulator/protocol/Device.h"

#include <string>

namespace sim
{

// The pipe to the broker that serves the device. No handle when none does. Throws Error when it hangs.
Handle FindBroker(Device const& device);

// The same, starting a broker when none serves the device: it is switched on. program: sim.exe. Throws Error.
Handle NeedBroker(Device const& device, std::wstring const& program);

// What there is to say of a broker that hangs. id: its process; 0: unknown.
std::wstring HungText(unsigned long id);

} // namespace sim
