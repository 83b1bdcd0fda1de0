#pragma once
#include "tests/support/WrappedCall.h"

#include <windows.h>

namespace test
{

REPLACEABLE(GetConsoleModeCall, GetConsoleMode);
REPLACEABLE(SetConsoleModeCall, SetConsoleMode);

} // namespace test
