#pragma once
#include <cstdint>
#include <string_view>

namespace zant
{

// The severity of a line: the greater, the more severe. Callers in other languages pass these numbers, and they are
// what is compared. Any other number is valid and counts by its value.
enum class LogLevel : std::int32_t
{
    Trace = 10,
    Debug = 20,
    Info = 30,
    Warn = 40,
    Error = 50,
    Fatal = 60,
    None = 70 // as a threshold: writes nothing. No operation logs at it.
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
