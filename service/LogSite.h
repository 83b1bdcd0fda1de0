#pragma once
#include "service/AppLogHook.h"
#include "utils/LogLevel.h"

// A log site of the application: component "ZEB", the category of its part of the program, and the two levels that the
// application uses. A message is always a printf format.
class LogSite
{
  public:
    // category: a literal; not copied.
    explicit constexpr LogSite(wchar_t const* category) noexcept : m_category(category) {}

    template <typename... Arguments>
    void Info(wchar_t const* format, Arguments... arguments) const
    {
        Write(zant::LogLevel::Info, format, arguments...);
    }

    template <typename... Arguments>
    void Error(wchar_t const* format, Arguments... arguments) const
    {
        Write(zant::LogLevel::Error, format, arguments...);
    }

  private:
    template <typename... Arguments>
    void Write(zant::LogLevel level, wchar_t const* format, Arguments... arguments) const
    {
        if (g_appLogHook)
        {
            g_appLogHook(static_cast<std::uint32_t>(level), L"ZEB", m_category, L"", L"", format, arguments...);
        }
    }

    wchar_t const* m_category;
};
