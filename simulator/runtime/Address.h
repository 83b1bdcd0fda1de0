#pragma once
#include "simulator/transport/Message.h"

#include <string>

namespace sim
{

// Whom a message of the platform to a process is for: one end of a connection, or a task instance.
std::wstring AddressOf(Message const& message);

// Which messages a message keeps its order among: those to its address; and what is said of an app service's task,
// those to the service's end of its connection.
std::wstring QueueOf(Message const& message);

// end: caller or service.
std::wstring ConnectionAddress(std::wstring const& connection, std::wstring const& end);

std::wstring InstanceAddress(std::wstring const& instance);

} // namespace sim
