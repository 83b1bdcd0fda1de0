#pragma once
#include "logging/LogHeaderText.h"

namespace zant
{

// The header that a target keeps, from what the machine tells now: the system, the user's locale, and the desktop suite
// where it is installed. What cannot be found out is empty, an unknown system "UNKNOWN", a suite that is not there left
// out. Throws std::bad_alloc only.
LogHeaderText BuildLogHeader();

} // namespace zant
