#include "logging/Logger.h"

#include "logging/LogTargetRegistry.h"
#include "utils/Utf8.h"

namespace zant
{

namespace
{

// The variable arguments of one operation. Only the operation itself can call va_start; the destructor calls va_end for
// it.
struct ArgumentList
{
    ArgumentList() = default;
    ArgumentList(ArgumentList const&) = delete;
    ArgumentList& operator=(ArgumentList const&) = delete;

    ~ArgumentList() { va_end(list); }

    va_list list = {};
};

template <typename Char>
constexpr Char emptyText[1] = {};

template <typename Char>
Char const* OrEmpty(Char const* text) noexcept
{
    return text != nullptr ? text : emptyText<Char>;
}

} // namespace

Logger::Logger() : m_registry(&GetLogTargetRegistry()), m_group(ToWide("ZEB").value_or(std::wstring())) {}

template <typename Char>
std::uint64_t Logger::DispatchLine(wchar_t const* columnCategory, LogLevel level, Char const* detail,
                                   Char const* origin, Char const* format, va_list arguments)
{
    if (format == nullptr)
    {
        return 0;
    }
    return Dispatch(*m_registry, m_group.c_str(), level, reserved.c_str(), product.c_str(), component.c_str(),
                    columnCategory, detail, origin, format, arguments);
}

template <typename Char>
std::uint64_t Logger::Forward(LogLevel level, Char const* detail, Char const* origin, Char const* format,
                              va_list arguments)
{
    return LogV(level, OrEmpty(detail), OrEmpty(origin), format, arguments);
}

template <typename Char>
std::uint64_t Logger::ForwardIn(Char const* scope, LogLevel level, Char const* detail, Char const* format,
                                va_list arguments)
{
    if (scope == nullptr || detail == nullptr)
    {
        return 0;
    }
    std::wstring converted;
    return DispatchLine(OrEmpty(AsWide(scope, converted)), level, detail, emptyText<Char>, format, arguments);
}

std::uint64_t Logger::LogV(LogLevel level, char const* detail, char const* origin, char const* format,
                           va_list arguments)
{
    return DispatchLine(category.c_str(), level, detail, origin, format, arguments);
}

std::uint64_t Logger::LogV(LogLevel level, wchar_t const* detail, wchar_t const* origin, wchar_t const* format,
                           va_list arguments)
{
    return DispatchLine(category.c_str(), level, detail, origin, format, arguments);
}

std::uint64_t Logger::Trace(char const* format, ...)
{
    ArgumentList arguments;
    va_start(arguments.list, format);
    return Forward<char>(LogLevel::Trace, nullptr, nullptr, format, arguments.list);
}

std::uint64_t Logger::Trace(wchar_t const* format, ...)
{
    ArgumentList arguments;
    va_start(arguments.list, format);
    return Forward<wchar_t>(LogLevel::Trace, nullptr, nullptr, format, arguments.list);
}

std::uint64_t Logger::Debug(char const* format, ...)
{
    ArgumentList arguments;
    va_start(arguments.list, format);
    return Forward<char>(LogLevel::Debug, nullptr, nullptr, format, arguments.list);
}

std::uint64_t Logger::Debug(wchar_t const* format, ...)
{
    ArgumentList arguments;
    va_start(arguments.list, format);
    return Forward<wchar_t>(LogLevel::Debug, nullptr, nullptr, format, arguments.list);
}

std::uint64_t Logger::Info(char const* format, ...)
{
    ArgumentList arguments;
    va_start(arguments.list, format);
    return Forward<char>(LogLevel::Info, nullptr, nullptr, format, arguments.list);
}

std::uint64_t Logger::Info(wchar_t const* format, ...)
{
    ArgumentList arguments;
    va_start(arguments.list, format);
    return Forward<wchar_t>(LogLevel::Info, nullptr, nullptr, format, arguments.list);
}

std::uint64_t Logger::Warn(char const* detail, char const* format, ...)
{
    ArgumentList arguments;
    va_start(arguments.list, format);
    return Forward<char>(LogLevel::Warn, detail, nullptr, format, arguments.list);
}

std::uint64_t Logger::Warn(wchar_t const* detail, wchar_t const* format, ...)
{
    ArgumentList arguments;
    va_start(arguments.list, format);
    return Forward<wchar_t>(LogLevel::Warn, detail, nullptr, format, arguments.list);
}

std::uint64_t Logger::Error(char const* detail, char const* format, ...)
{
    ArgumentList arguments;
    va_start(arguments.list, format);
    return Forward<char>(LogLevel::Error, detail, nullptr, format, arguments.list);
}

std::uint64_t Logger::Error(wchar_t const* detail, wchar_t const* format, ...)
{
    ArgumentList arguments;
    va_start(arguments.list, format);
    return Forward<wchar_t>(LogLevel::Error, detail, nullptr, format, arguments.list);
}

std::uint64_t Logger::Fatal(char const* detail, char const* format, ...)
{
    ArgumentList arguments;
    va_start(arguments.list, format);
    return Forward<char>(LogLevel::Fatal, detail, nullptr, format, arguments.list);
}

std::uint64_t Logger::Fatal(wchar_t const* detail, wchar_t const* format, ...)
{
    ArgumentList arguments;
    va_start(arguments.list, format);
    return Forward<wchar_t>(LogLevel::Fatal, detail, nullptr, format, arguments.list);
}

std::uint64_t Logger::Log(LogLevel level, char const* detail, char const* origin, char const* format, ...)
{
    ArgumentList arguments;
    va_start(arguments.list, format);
    return Forward(level, detail, origin, format, arguments.list);
}

std::uint64_t Logger::Log(LogLevel level, wchar_t const* detail, wchar_t const* origin, wchar_t const* format, ...)
{
    ArgumentList arguments;
    va_start(arguments.list, format);
    return Forward(level, detail, origin, format, arguments.list);
}

std::uint64_t Logger::TraceIn(char const* scope, char const* format, ...)
{
    ArgumentList arguments;
    va_start(arguments.list, format);
    return ForwardIn(scope, LogLevel::Trace, emptyText<char>, format, arguments.list);
}

std::uint64_t Logger::TraceIn(wchar_t const* scope, wchar_t const* format, ...)
{
    ArgumentList arguments;
    va_start(arguments.list, format);
    return ForwardIn(scope, LogLevel::Trace, emptyText<wchar_t>, format, arguments.list);
}

std::uint64_t Logger::DebugIn(char const* scope, char const* format, ...)
{
    ArgumentList arguments;
    va_start(arguments.list, format);
    return ForwardIn(scope, LogLevel::Debug, emptyText<char>, format, arguments.list);
}

std::uint64_t Logger::DebugIn(wchar_t const* scope, wchar_t const* format, ...)
{
    ArgumentList arguments;
    va_start(arguments.list, format);
    return ForwardIn(scope, LogLevel::Debug, emptyText<wchar_t>, format, arguments.list);
}

std::uint64_t Logger::InfoIn(char const* scope, char const* format, ...)
{
    ArgumentList arguments;
    va_start(arguments.list, format);
    return ForwardIn(scope, LogLevel::Info, emptyText<char>, format, arguments.list);
}

std::uint64_t Logger::InfoIn(wchar_t const* scope, wchar_t const* format, ...)
{
    ArgumentList arguments;
    va_start(arguments.list, format);
    return ForwardIn(scope, LogLevel::Info, emptyText<wchar_t>, format, arguments.list);
}

std::uint64_t Logger::WarnIn(char const* scope, char const* detail, char const* format, ...)
{
    ArgumentList arguments;
    va_start(arguments.list, format);
    return ForwardIn(scope, LogLevel::Warn, detail, format, arguments.list);
}

std::uint64_t Logger::WarnIn(wchar_t const* scope, wchar_t const* detail, wchar_t const* format, ...)
{
    ArgumentList arguments;
    va_start(arguments.list, format);
    return ForwardIn(scope, LogLevel::Warn, detail, format, arguments.list);
}

std::uint64_t Logger::ErrorIn(char const* scope, char const* detail, char const* format, ...)
{
    ArgumentList arguments;
    va_start(arguments.list, format);
    return ForwardIn(scope, LogLevel::Error, detail, format, arguments.list);
}

std::uint64_t Logger::ErrorIn(wchar_t const* scope, wchar_t const* detail, wchar_t const* format, ...)
{
    ArgumentList arguments;
    va_start(arguments.list, format);
    return ForwardIn(scope, LogLevel::Error, detail, format, arguments.list);
}

std::uint64_t Logger::FatalIn(char const* scope, char const* detail, char const* format, ...)
{
    ArgumentList arguments;
    va_start(arguments.list, format);
    return ForwardIn(scope, LogLevel::Fatal, detail, format, arguments.list);
}

std::uint64_t Logger::FatalIn(wchar_t const* scope, wchar_t const* detail, wchar_t const* format, ...)
{
    ArgumentList arguments;
    va_start(arguments.list, format);
    return ForwardIn(scope, LogLevel::Fatal, detail, format, arguments.list);
}

} // namespace zant
