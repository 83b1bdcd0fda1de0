#pragma once
#include "utils/AbstractLogger.h"
#include "utils/LogFunction.h"

namespace zant
{

// Where the utilities' own lines go: to the hook when it is set, else to the logger, else nowhere. Both start null and
// are not owned. Whoever sets them does so before other threads use the utilities. This application sets neither.
extern LogFunction g_utilsLogHook;
extern AbstractLogger* g_utilsLogger;

// Any thread. format: a wide printf format for the arguments. The hook gets component "ZANTUtils" and the category; the
// logger gets the category as the line's origin.
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
