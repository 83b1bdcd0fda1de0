#pragma once
#include <cstdint>
#include <string_view>

namespace zant
{

// How severe a line is; the greater, the more severe. The numbers are what callers of other languages pass and what is
// compared. Any other number is allowed: it counts by its value.
enum class LogLevel : std::int32_t
{
    Trace = 10,
    Debug = 20,
    Info = 30,
    Warn = 40,
    Error = 50,
    Fatal = 60,
    None = 70 // as a threshold: nothing is written. No operation logs at it.
};

// The name in the brackets of a line.
constexpr std::wstring_view LevelName(LogLevel level) noexcept
{
    switch (level)
    {
    case LogLevel::Trace:
        return L"TRACE";
    case LogLevel::Debug:
        return L"DEBUG";
    case LogLevel::Info:
        return L"INFO";
    case LogLevel::Warn:
        return L"WARN";
    case LogLevel::Error:
        return L"ERROR";
    case LogLevel::Fatal:
        return L"FATAL";
    case LogLevel::None:
        return L"NONE";
    default:
        return L"ALL";
    }
}

} // namespace zant
