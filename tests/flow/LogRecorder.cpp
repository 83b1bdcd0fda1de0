#include "tests/flow/LogRecorder.h"

#include "app/AppLog.h"
#include "service/AppLogHook.h"
#include "simulator/testing/LimitedWait.h"
#include "tests/flow/Lines.h"
#include "utils/LogLevel.h"

#include <algorithm>
#include <cstdarg>
#include <gtest/gtest.h>
#include <iterator>
#include <windows.h>

namespace test
{

LogRecorder::LogRecorder(std::function<unsigned()> count) : m_count(std::move(count))
{
    s_current = this;
    g_appLogHook = Write;
}

LogRecorder::~LogRecorder()
{
    g_appLogHook = AppLog;
    s_current = nullptr;
}

std::vector<std::wstring> LogRecorder::Lines() const
{
    std::lock_guard const lock(m_mutex);
    return Texts();
}

std::vector<std::wstring> LogRecorder::WaitForLines(std::size_t count) const
{
    auto lines = TryWaitForLines(count);
    if (lines.size() < count)
    {
        throw sim::Missing(L"line " + std::to_wstring(count) + L" of the log, after" + Shown(lines));
    }
    return lines;
}

std::vector<std::wstring> LogRecorder::TryWaitForLines(std::size_t count) const
{
    std::unique_lock lock(m_mutex);
    m_changed.wait_for(lock, sim::waitLimit, [&] { return m_lines.size() >= count; });
    return Texts();
}

unsigned LogRecorder::WaitForMessage(std::wstring const& message, std::source_location where) const
{
    return WaitFor(message, where).count;
}

std::uint32_t LogRecorder::WaitForThreadOf(std::wstring const& message, std::source_location where) const
{
    return WaitFor(message, where).thread;
}

void LogRecorder::After(std::wstring message, std::function<void()> action)
{
    std::lock_guard const lock(m_mutex);
    m_actions[std::move(message)] = std::move(action);
}

LogRecorder::Line LogRecorder::WaitFor(std::wstring const& message, std::source_location where) const
{
    std::unique_lock lock(m_mutex);
    auto line = m_lines.end();
    auto const hasCome = m_changed.wait_for(lock, sim::waitLimit, [&] {
        line = std::ranges::find_if(
            m_lines, [&](auto const& text) { return text.ends_with(L" " + message); }, &Line::text);
        return line != m_lines.end();
    });
    if (!hasCome)
    {
        ADD_FAILURE_AT(where.file_name(), static_cast<int>(where.line()))
            << sim::Missing(L"the log line \"" + message + L"\", among" + Shown(Texts())).what();
        return {};
    }
    return *line;
}

std::vector<std::wstring> LogRecorder::Texts() const
{
    std::vector<std::wstring> texts;
    std::ranges::transform(m_lines, std::back_inserter(texts), &Line::text);
    return texts;
}

// No line of the application has more than one argument, and that is a string.
std::int32_t LogRecorder::Write(std::uint32_t level, wchar_t const* component, wchar_t const* category,
                                wchar_t const* ignored, wchar_t const* location, wchar_t const* format, ...)
{
    auto const count = s_current->m_count();
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
    auto const levelName = zant::LevelName(static_cast<zant::LogLevel>(level));
    s_current->Add({L"[" + std::wstring(levelName) + L"] " + category + L" " + message, count, GetCurrentThreadId()});
    if (auto const action = s_current->TakeAction(message))
    {
        action();
    }
    return 0;
}

void LogRecorder::Add(Line line)
{
    std::lock_guard const lock(m_mutex);
    m_lines.push_back(std::move(line));
    m_changed.notify_all();
}

std::function<void()> LogRecorder::TakeAction(std::wstring const& message)
{
    std::lock_guard const lock(m_mutex);
    auto action = m_actions.extract(message);
    return action ? std::move(action.mapped()) : nullptr;
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
