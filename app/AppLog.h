#pragma once
#include <cstdint>

// The application's log function, for the hook that its log sites call (parameters: utils/LogFunction.h). Any thread.
// Does nothing until the logger exists. Stores component and category in the shared logger (null keeps those of the
// previous call) and writes the line, under one lock for both. Always returns 0.
std::int32_t AppLog(std::uint32_t level, wchar_t const* component, wchar_t const* category, wchar_t const* ignored,
                    wchar_t const* location, wchar_t const* format, ...);
