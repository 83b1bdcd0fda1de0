#include "app/AppLog.h"

#include "app/LoggingLock.h"
#include "logging/Logger.h"

#include <cstdarg>

namespace
{

// Constructed before main, so that it exists for the first line of any thread.
LoggingLock loggingLock;

} // namespace

std::int32_t AppLog(std::uint32_t level, wchar_t const* component, wchar_t const* category, wchar_t const* /*ignored*/,
                    wchar_t const* location, wchar_t const* format, ...)
{
    if (!zant::g_logger)
    {
        return 0;
    }
    LoggingScope const scope(loggingLock);
    if (component)
    {
        zant::g_logger->component = component;
    }
    if (category)
    {
        zant::g_logger->category = category;
    }
    std::va_list arguments = {};
    va_start(arguments, format);
    zant::g_logger->LogV(static_cast<zant::LogLevel>(level), location, component, format, arguments);
    va_end(arguments);
    return 0;
}
