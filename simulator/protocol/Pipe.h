#pragma once
#include "simulator/base/Handle.h"

#include <string>

namespace sim
{

// One end for one client to come. Failing gives no handle, and the reason in GetLastError.
Handle MakePipe(std::wstring const& name);

// How long the platform may take for what it does at once, in milliseconds: then it counts as hung.
constexpr unsigned hungAfter = 5'000;

// Connects to a server, waiting while all its ends are taken. No handle when there is none, or, with ERROR_SEM_TIMEOUT
// in GetLastError, when it hangs.
Handle ConnectPipe(std::wstring const& name);

} // namespace sim
