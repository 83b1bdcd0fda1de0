#pragma once
#include "utils/LogLevel.h"

#include <cstdarg>
#include <cstdint>

namespace zant
{

// What one can log through. The order of the operations is a binary interface: a slot is the place of an operation in
// this declaration, counted from 0 (0 to 27, the destructor is 28). Callers of other modules call by slot, so nothing
// may be inserted or moved.
//
// Narrow text is UTF-8, wide text is UTF-16. A format is a printf format of the universal C runtime (in a wide format
// %s and %ls are wide, %S and %hs narrow). What an operation does with null pointers is said with each family. The
// returned number carries no meaning for callers. Nothing is thrown.
class AbstractLogger
{
  public:
    // A null format logs nothing; a null detail stands for an empty one.
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

    // A null format logs nothing; a null detail or origin stands for an empty one.
    virtual std::uint64_t Log(LogLevel level, char const* detail, char const* origin, char const* format, ...) = 0;
    virtual std::uint64_t Log(LogLevel level, wchar_t const* detail, wchar_t const* origin, wchar_t const* format,
                              ...) = 0;

    // As Log, with the arguments as a list. No list at all (null) makes the format the message as it stands, whatever
    // its length and whatever percent signs it holds.
    virtual std::uint64_t LogV(LogLevel level, char const* detail, char const* origin, char const* format,
                               va_list arguments) = 0;
    virtual std::uint64_t LogV(LogLevel level, wchar_t const* detail, wchar_t const* origin, wchar_t const* format,
                               va_list arguments) = 0;

    // The scope stands in the line in place of the logger's category, which stays as it is. A null scope, detail or
    // format logs nothing. A narrow scope that is not valid UTF-8 counts as empty.
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
