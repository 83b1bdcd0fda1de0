#pragma once
#include <cstdint>

// The outlet through which the application's own code logs. The shell puts its log function in here once logging is
// set up; until then every line is dropped, so that code may log at any time, static initialisation included.
// Written once, on the start-up thread, before any other thread of the application runs.

// level: the library's level codes. component and category: wide strings, or null for those of the line before.
// ignored: accepted and not used. location: the line's detail. format: a wide printf format for what follows.
// Always returns 0.
using AppLogFunction = std::int32_t (*)(std::uint32_t level, wchar_t const* component, wchar_t const* category,
                                        wchar_t const* ignored, wchar_t const* location, wchar_t const* format, ...);

extern AppLogFunction g_appLogHook;
