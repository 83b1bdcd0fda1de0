#pragma once
#include "utils/LogFunction.h"

// The hook through which the application's own code logs. The shell sets it once logging is set up; until then lines
// are dropped, so code may log at any time, including static initialisation. Written once, on the start-up thread,
// before any other thread of the application runs.
extern zant::LogFunction g_appLogHook;
