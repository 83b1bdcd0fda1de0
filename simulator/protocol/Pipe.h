#pragma once
#include "simulator/base/Handle.h"

#include <string>

namespace sim
{

// One end for one client to come. Failing gives no handle, and the reason in GetLastError.
Handle MakePipe(std::wstring const& name);

// Connects to a server, waiting while all its ends are taken. No handle when there is none.
Handle ConnectPipe(std::wstring const& name);

} // namespace sim
