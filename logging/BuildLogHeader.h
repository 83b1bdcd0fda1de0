#pragma once
#include "logging/LogHeaderText.h"

namespace zant
{

// Builds the header that a target keeps: the system, the user's locale and, where it is installed, the desktop suite. A
// value that the system does not give is empty, an unknown system is "UNKNOWN", and a suite that is not installed has
// no entry. Throws std::bad_alloc only.
LogHeaderText BuildLogHeader();

} // namespace zant
