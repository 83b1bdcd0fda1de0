#include "tests/flow/LogRecorder.h"

#include "app/AppLog.h"
#include "logging/LogLevel.h"
#include "service/AppLogHook.h"

#include <algorithm>
#include <cstdarg>

namespace test
{

LogRecorder::LogRecorder()
{
    s_current = this;
    g_appLogHook = Write;
}

LogRecorder::~LogRecorder()
{
    g_appLogHook = AppLog;
    s_current = nullptr;
}

std::vector<std::wstring> LogRecorder::WaitForLines(std::size_t count) const
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [&] { return m_lines.size() >= count; });
    return m_lines;
}

void LogRecorder::WaitForMessage(std::wstring const& message) const
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [&] {
        return std::ranges::any_of(m_lines, [&](auto const& line) { return line.ends_with(L" " + message); });
    });
}

// No line of the application has more than one argument, and that one is text.
std::int32_t LogRecorder::Write(std::uint32_t level, wchar_t const* component, wchar_t const* category,
                                wchar_t const* ignored, wchar_t const* location, wchar_t const* format, ...)
{
    std::wstring message = format;
    if (auto const placeholder = message.find(L"%ls"); placeholder != std::wstring::npos)
    {
        std::va_list arguments = {};
        va_start(arguments, format);
        auto const* const argument = va_arg(arguments, wchar_t const*);
        va_end(arguments);
        AppLog(level, component, category, ignored, location, format, argument);
        message.replace(placeholder, 3, argument);
    }
    else
    {
        AppLog(level, component, category, ignored, location, format);
    }
    s_current->Add(L"[" + std::wstring(zant::LevelName(static_cast<zant::LogLevel>(level))) + L"] " + category + L" " +
                   message);
    return 0;
}

void LogRecorder::Add(std::wstring line)
{
    std::lock_guard const lock(m_mutex);
    m_lines.push_back(std::move(line));
    m_changed.notify_all();
}

std::wstring Info(std::wstring const& message)
{
    return L"[INFO] AppService " + message;
}

std::wstring Error(std::wstring const& message)
{
    return L"[ERROR] AppService " + message;
}

} // namespace test
