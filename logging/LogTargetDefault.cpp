#include "logging/LogTargetDefault.h"

#include "logging/BuildLogHeader.h"
#include "logging/Folders.h"
#include "logging/LineText.h"
#include "logging/LogFile.h"
#include "logging/MessageText.h"
#include "utils/Utf8.h"
#include "utils/WideScan.h"

#include <cwchar>
#include <new>

namespace zant
{

namespace
{

constexpr DWORD longestWait = 2'000; // milliseconds

} // namespace

// The common arguments of both forms of Log.
struct LogTargetDefault::Call
{
    LogLevel level;
    wchar_t const* reserved;
    wchar_t const* product;
    wchar_t const* component;
    wchar_t const* category;
    std::uint64_t time;
    bool lockFlag;
};

LogTargetDefault::LogTargetDefault()
{
    group = L"ZEB";
    // cppcheck-suppress useInitializationList ; the header is built last
    storedHeader = BuildLogHeader();
}

LogTargetDefault::~LogTargetDefault()
{
    LogTargetDefault::Close();
}

bool LogTargetDefault::OpenFile(UniqueHandle& handle)
{
    return OpenLog(handle, filePath, wideOutput, setAsidePath);
}

bool LogTargetDefault::Open()
{
    if (!enabled)
    {
        return false;
    }
    if (filePath.empty())
    {
        filePath = MakeTemporaryPath(fileName).value_or(L"");
    }
    if (filePath.empty() || (!file && !OpenFile(file)))
    {
        return false;
    }
    if (!lock)
    {
        lock = std::make_unique<NamedMutex>();
    }
    lock->CreateOrOpen(fileName.c_str());
    lastCheck = lastLine = static_cast<std::int64_t>(NowInMilliseconds() / 1'000);
    if (!useLock || !*lock || !CheckSizeAtOpening())
    {
        useLock = false;
    }
    isOpen = true;
    return true;
}

// False when the mutex cannot be acquired.
bool LogTargetDefault::CheckSizeAtOpening()
{
    auto const scope = lock->Wait(longestWait);
    if (!scope.IsOwner())
    {
        return false;
    }
    CheckSize();
    if (!file)
    {
        lastCheck = 0; // the first line checks again
    }
    return true;
}

bool LogTargetDefault::Close()
{
    file.Reset();
    lock.reset();
    isOpen = false;
    return true;
}

bool LogTargetDefault::Log(LogLevel level, wchar_t const* reserved, wchar_t const* product, wchar_t const* component,
                           wchar_t const* category, char const* detail, char const* origin, char const* format,
                           va_list arguments, std::uint64_t time, bool lockFlag) noexcept
{
    LogLine({level, reserved, product, component, category, time, lockFlag}, detail, origin, format, arguments);
    return true;
}

bool LogTargetDefault::Log(LogLevel level, wchar_t const* reserved, wchar_t const* product, wchar_t const* component,
                           wchar_t const* category, wchar_t const* detail, wchar_t const* origin, wchar_t const* format,
                           va_list arguments, std::uint64_t time, bool lockFlag) noexcept
{
    LogLine({level, reserved, product, component, category, time, lockFlag}, detail, origin, format, arguments);
    return true;
}

template <typename Char>
void LogTargetDefault::LogLine(Call const& call, Char const* detail, Char const* origin, Char const* format,
                               va_list arguments)
try
{
    if (call.level < threshold || format == nullptr)
    {
        return;
    }
    if (!call.lockFlag)
    {
        if (useLock)
        {
            WriteLine(call, detail, origin, format, arguments);
        }
        return;
    }
    if (!lock || !useLock || !*lock)
    {
        useLock = false;
        return;
    }
    auto const scope = lock->Wait(longestWait);
    if (!scope.IsOwner())
    {
        useLock = false;
        return;
    }
    if (scope.Outcome() == MutexWait::Abandoned)
    {
        CompleteLastLine();
    }
    // Another thread's failed wait may clear useLock during this wait, and during the check.
    if (useLock)
    {
        CheckSizeWhenDue();
    }
    if (useLock)
    {
        WriteLine(call, detail, origin, format, arguments);
    }
}
catch (std::bad_alloc const&)
{
    // The line is lost; the mutex is released.
}

template <typename Char>
void LogTargetDefault::WriteLine(Call const& call, Char const* detail, Char const* origin, Char const* format,
                                 va_list arguments)
{
    if (headerPending)
    {
        LogHeader(LogLevel::Info, call.reserved, call.product, call.component, call.category, nullptr, false);
    }
    std::wstring convertedDetail;
    std::wstring convertedOrigin;
    auto const* const wideDetail = AsWide(detail, convertedDetail);
    auto const* const wideOrigin = AsWide(origin, convertedOrigin);
    auto const message = MessageText(format, arguments, m_message);
    if (wideDetail == nullptr || wideOrigin == nullptr || !message)
    {
        return;
    }
    Compose(call, ViewOf(wideDetail), ViewOf(wideOrigin), *message);
    if (wideOutput)
    {
        WriteRaw(m_line.c_str());
    }
    else if (auto const narrow = ToUtf8(m_line))
    {
        WriteRaw(narrow->c_str());
    }
}

void LogTargetDefault::Compose(Call const& call, std::wstring_view detail, std::wstring_view origin,
                               std::wstring_view message)
{
    auto printedLevel = call.level;
    message = Redact(message, m_redacted, printedLevel, maskedKeys);
    auto const time = call.time != 0 ? call.time : NowInMilliseconds();
    lastLine = static_cast<std::int64_t>(time / 1'000);
    ComposeLine(m_line, separator,
                {.dateAndTime = m_second.Of(lastLine),
                 .milliseconds = static_cast<std::uint32_t>(time % 1'000),
                 .level = printedLevel,
                 .fields = {ViewOf(call.reserved), ViewOf(call.product), ViewOf(call.component), ViewOf(call.category),
                            detail, origin},
                 .threadId = GetCurrentThreadId(),
                 .message = message});
}

bool LogTargetDefault::WriteRaw(char const* text) noexcept
{
    return AppendLine(file.Get(), wideOutput, std::string_view(text));
}

bool LogTargetDefault::WriteRaw(wchar_t const* text) noexcept
{
    return AppendLine(file.Get(), wideOutput, ViewOf(text));
}

void LogTargetDefault::LogHeader(LogLevel level, wchar_t const* reserved, wchar_t const* product,
                                 wchar_t const* component, wchar_t const* category, LogHeaderText const* header,
                                 bool lockFlag)
{
    headerPending = false;
    if (header != nullptr && header->merge)
    {
        storedHeader.Merge(*header);
    }
    auto const& shown = header == nullptr || header->merge ? storedHeader : *header;
    shown.ForEachLine([&](std::wstring const& line) {
        Log(level, reserved, product, component, category, L"", L"", line.c_str(), nullptr, 0, lockFlag);
    });
}

} // namespace zant
