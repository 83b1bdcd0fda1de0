#pragma once
#include "simulator/transport/Message.h"

#include <string>

namespace sim
{

// Whom a message of the platform to a process is for: one end of a connection, or a task instance. Messages to the same
// address keep their order.
std::wstring AddressOf(Message const& message);

// end: caller or service.
std::wstring ConnectionAddress(std::wstring const& connection, std::wstring const& end);

std::wstring InstanceAddress(std::wstring const& instance);

} // namespace sim
