#pragma once
#include <vector>
#include <windows.h>
#include <winternl.h>

namespace sim
{

// The handles of all processes. GetProcessHandleCount would count those of one, but is always 0 in Wine. Throws Error.
std::vector<SYSTEM_HANDLE_ENTRY> AllHandles();

} // namespace sim
