#pragma once
#include "utils/LogLevel.h"

#include <cstdarg>
#include <cstdint>

namespace zant
{

// The interface of a logger. The order of the operations is a binary interface: a slot is the place of an operation in
// this declaration, counted from 0 (0 to 27, the destructor is 28). Other modules call by slot, so nothing may be
// inserted or moved.
//
// Narrow strings are UTF-8, wide strings UTF-16. A format is a printf format of the universal C runtime (in a wide
// format %s and %ls are wide, %S and %hs narrow). Each family documents its handling of null pointers. Callers ignore
// the returned number. Nothing is thrown.
class AbstractLogger
{
  public:
    // A null format logs nothing; a null detail counts as empty.
    virtual std::uint64_t Trace(char const* format, ...) = 0;
    virtual std::uint64_t Trace(wchar_t const* format, ...) = 0;
    virtual std::uint64_t Debug(char const* format, ...) = 0;
    virtual std::uint64_t Debug(wchar_t const* format, ...) = 0;
    virtual std::uint64_t Info(char const* format, ...) = 0;
    virtual std::uint64_t Info(wchar_t const* format, ...) = 0;
    virtual std::uint64_t Warn(char const* detail, char const* format, ...) = 0;
    virtual std::uint64_t Warn(wchar_t const* detail, wchar_t const* format, ...) = 0;
    virtual std::uint64_t Error(char const* detail, char const* format, ...) = 0;
    virtual std::uint64_t Error(wchar_t const* detail, wchar_t const* format, ...) = 0;
    virtual std::uint64_t Fatal(char const* detail, char const* format, ...) = 0;
    virtual std::uint64_t Fatal(wchar_t const* detail, wchar_t const* format, ...) = 0;

    // A null format logs nothing; a null detail or origin counts as empty.
    virtual std::uint64_t Log(LogLevel level, char const* detail, char const* origin, char const* format, ...) = 0;
    virtual std::uint64_t Log(LogLevel level, wchar_t const* detail, wchar_t const* origin, wchar_t const* format,
                              ...) = 0;

    // As Log, with the arguments as a list. With a null list the format itself is the message, of any length and with
    // any percent signs.
    virtual std::uint64_t LogV(LogLevel level, char const* detail, char const* origin, char const* format,
                               va_list arguments) = 0;
    virtual std::uint64_t LogV(LogLevel level, wchar_t const* detail, wchar_t const* origin, wchar_t const* format,
                               va_list arguments) = 0;

    // The scope replaces the logger's category in the line; the category itself does not change. A null scope, detail
    // or format logs nothing. A narrow scope that is not valid UTF-8 counts as empty.
    virtual std::uint64_t TraceIn(char const* scope, char const* format, ...) = 0;
    virtual std::uint64_t TraceIn(wchar_t const* scope, wchar_t const* format, ...) = 0;
    virtual std::uint64_t DebugIn(char const* scope, char const* format, ...) = 0;
    virtual std::uint64_t DebugIn(wchar_t const* scope, wchar_t const* format, ...) = 0;
    virtual std::uint64_t InfoIn(char const* scope, char const* format, ...) = 0;
    virtual std::uint64_t InfoIn(wchar_t const* scope, wchar_t const* format, ...) = 0;
    virtual std::uint64_t WarnIn(char const* scope, char const* detail, char const* format, ...) = 0;
    virtual std::uint64_t WarnIn(wchar_t const* scope, wchar_t const* detail, wchar_t const* format, ...) = 0;
    virtual std::uint64_t ErrorIn(char const* scope, char const* detail, char const* format, ...) = 0;
    virtual std::uint64_t ErrorIn(wchar_t const* scope, wchar_t const* detail, wchar_t const* format, ...) = 0;
    virtual std::uint64_t FatalIn(char const* scope, char const* detail, char const* format, ...) = 0;
    virtual std::uint64_t FatalIn(wchar_t const* scope, wchar_t const* detail, wchar_t const* format, ...) = 0;

    virtual ~AbstractLogger() = default;
};

} // namespace zant
