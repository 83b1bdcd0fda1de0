#pragma once
#include <cstdint>

namespace zant
{

// A function that writes one line to a log. level: a LogLevel. component and category: wide strings, or null for those
// of the previous line. ignored: not used. location: the line's detail. format: a wide printf format for the arguments.
// Always returns 0.
using LogFunction = std::int32_t (*)(std::uint32_t level, wchar_t const* component, wchar_t const* category,
                                     wchar_t const* ignored, wchar_t const* location, wchar_t const* format, ...);

} // namespace zant
