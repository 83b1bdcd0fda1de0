#pragma once
#include "utils/LogFunction.h"

// The outlet through which the application's own code logs. The shell puts its log function in here once logging is
// set up; until then every line is dropped, so that code may log at any time, static initialisation included.
// Written once, on the start-up thread, before any other thread of the application runs.
extern zant::LogFunction g_appLogHook;
