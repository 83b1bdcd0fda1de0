#pragma once
#include "utils/AbstractLogger.h"
#include "utils/LogFunction.h"

namespace zant
{

// The outlets of the utilities' lines: the hook if it is set, else the logger, else none. Both start null and are not
// owned. Set them before other threads use the utilities. This application sets neither.
extern LogFunction g_utilsLogHook;
extern AbstractLogger* g_utilsLogger;

// Any thread. format: a wide printf format for the arguments. The hook receives the component "ZANTUtils" and the
// category; the logger receives the category as the line's origin.
template <typename... Arguments>
void LogFromUtils(LogLevel level, wchar_t const* category, wchar_t const* format, Arguments... arguments) noexcept
{
    if (g_utilsLogHook)
    {
        g_utilsLogHook(static_cast<std::uint32_t>(level), L"ZANTUtils", category, L"", L"", format, arguments...);
    }
    else if (g_utilsLogger)
    {
        g_utilsLogger->Log(level, L"", category, format, arguments...);
    }
}

} // namespace zant
