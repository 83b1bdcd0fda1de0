#pragma once
#include "utils/AbstractLogger.h"

#include <string>

namespace zant
{

class LogTargetRegistry;

// The front of the library: passes each call to the targets registered under its group. It holds no lock. Callers that
// set its shared fields before they log guard both with a lock of their own; the scoped operations change no field and
// need none.
class Logger : public AbstractLogger
{
  public:
    // Throws std::bad_alloc only.
    Logger();

    std::uint64_t Trace(char const* format, ...) override;
    std::uint64_t Trace(wchar_t const* format, ...) override;
    std::uint64_t Debug(char const* format, ...) override;
    std::uint64_t Debug(wchar_t const* format, ...) override;
    std::uint64_t Info(char const* format, ...) override;
    std::uint64_t Info(wchar_t const* format, ...) override;
    std::uint64_t Warn(char const* detail, char const* format, ...) override;
    std::uint64_t Warn(wchar_t const* detail, wchar_t const* format, ...) override;
    std::uint64_t Error(char const* detail, char const* format, ...) override;
    std::uint64_t Error(wchar_t const* detail, wchar_t const* format, ...) override;
    std::uint64_t Fatal(char const* detail, char const* format, ...) override;
    std::uint64_t Fatal(wchar_t const* detail, wchar_t const* format, ...) override;
    std::uint64_t Log(LogLevel level, char const* detail, char const* origin, char const* format, ...) override;
    std::uint64_t Log(LogLevel level, wchar_t const* detail, wchar_t const* origin, wchar_t const* format,
                      ...) override;
    std::uint64_t LogV(LogLevel level, char const* detail, char const* origin, char const* format,
                       va_list arguments) override;
    std::uint64_t LogV(LogLevel level, wchar_t const* detail, wchar_t const* origin, wchar_t const* format,
                       va_list arguments) override;
    std::uint64_t TraceIn(char const* scope, char const* format, ...) override;
    std::uint64_t TraceIn(wchar_t const* scope, wchar_t const* format, ...) override;
    std::uint64_t DebugIn(char const* scope, char const* format, ...) override;
    std::uint64_t DebugIn(wchar_t const* scope, wchar_t const* format, ...) override;
    std::uint64_t InfoIn(char const* scope, char const* format, ...) override;
    std::uint64_t InfoIn(wchar_t const* scope, wchar_t const* format, ...) override;
    std::uint64_t WarnIn(char const* scope, char const* detail, char const* format, ...) override;
    std::uint64_t WarnIn(wchar_t const* scope, wchar_t const* detail, wchar_t const* format, ...) override;
    std::uint64_t ErrorIn(char const* scope, char const* detail, char const* format, ...) override;
    std::uint64_t ErrorIn(wchar_t const* scope, wchar_t const* detail, wchar_t const* format, ...) override;
    std::uint64_t FatalIn(char const* scope, char const* detail, char const* format, ...) override;
    std::uint64_t FatalIn(wchar_t const* scope, wchar_t const* detail, wchar_t const* format, ...) override;

  private:
    template <typename Char>
    std::uint64_t DispatchLine(wchar_t const* columnCategory, LogLevel level, Char const* detail, Char const* origin,
                               Char const* format, va_list arguments);
    template <typename Char>
    std::uint64_t Forward(LogLevel level, Char const* detail, Char const* origin, Char const* format,
                          va_list arguments);
    template <typename Char>
    std::uint64_t ForwardIn(Char const* scope, LogLevel level, Char const* detail, Char const* format,
                            va_list arguments);

    // The order of the fields is part of the binary interface, as is that of the operations.
    LogTargetRegistry* m_registry;

  public:
    std::wstring reserved; // never set
    std::wstring product;
    std::wstring component;
    std::wstring category;

  private:
    std::wstring m_group;
};

// The logger of the process. Null until start-up creates it; never destroyed.
inline Logger* g_logger = nullptr;

} // namespace zant
