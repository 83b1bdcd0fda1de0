#pragma once
#include "simulator/base/Handle.h"
#include "simulator/client/BrokerClient.h"

#include <memory>
#include <string>

namespace bench
{

// Waits for a process's end. Throws sim::Error, which names it, unless it was started and ends with 0.
void AwaitSuccess(sim::Handle const& process, std::wstring const& name);

// Registers the package on the device, a folder that is made. All events of the device arrive. Throws sim::Error.
std::unique_ptr<sim::BrokerClient> FollowNewDevice(std::wstring const& simulator, std::wstring const& device,
                                                   std::wstring const& package);

} // namespace bench
