#include "utils/UtilsLog.h"

namespace zant
{

LogFunction g_utilsLogHook = nullptr;
AbstractLogger* g_utilsLogger = nullptr;

void LogFromUtils(LogLevel level, wchar_t const* category, wchar_t const* message) noexcept
{
    if (g_utilsLogHook)
    {
        g_utilsLogHook(static_cast<std::uint32_t>(level), L"ZANTUtils", category, L"", L"", message);
    }
    else if (g_utilsLogger)
    {
        g_utilsLogger->Log(level, L"", category, message);
    }
}

} // namespace zant
