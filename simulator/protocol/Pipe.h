#pragma once
#include "simulator/base/Handle.h"

#include <string>

namespace sim
{

// A server's end, for one client. On failure no handle, and the reason in GetLastError.
Handle MakePipe(std::wstring const& name);

// How long the platform may take, in milliseconds, for a request that it answers at once: then it counts as hung.
constexpr unsigned hungAfter = 5'000;

// Connects to a server; waits while all its ends are in use. No handle when there is no server or, with
// ERROR_SEM_TIMEOUT in GetLastError, when it hangs.
Handle ConnectPipe(std::wstring const& name);

} // namespace sim
