#include "console/Console.h"

#include "utils/Utf8.h"

#include <string>
#include <windows.h>

namespace console
{

namespace
{

bool IsConsole(HANDLE handle) noexcept
{
    DWORD mode = 0;
    return GetConsoleMode(handle, &mode) != FALSE;
}

// One write for a line, which a pipe and a file keep together. A console would take bytes for text in its own code
// page: it gets UTF-16.
bool WriteTo(DWORD stream, std::string_view text) noexcept
{
    auto* const handle = GetStdHandle(stream);
    auto const line = std::string(text) + '\n';
    auto const wide = IsConsole(handle) ? zant::ToWide(line) : std::nullopt;
    DWORD written = 0;
    auto const isWritten =
        wide ? WriteConsoleW(handle, wide->data(), static_cast<DWORD>(wide->size()), &written, nullptr)
             : WriteFile(handle, line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
    return isWritten != FALSE;
}

bool WriteTo(DWORD stream, std::wstring_view text) noexcept
{
    auto const narrow = zant::ToUtf8(text);
    return narrow && WriteTo(stream, *narrow);
}

} // namespace

bool WriteLine(std::string_view text) noexcept
{
    return WriteTo(STD_OUTPUT_HANDLE, text);
}

bool WriteErrorLine(std::string_view text) noexcept
{
    return WriteTo(STD_ERROR_HANDLE, text);
}

bool WriteLine(std::wstring_view text) noexcept
{
    return WriteTo(STD_OUTPUT_HANDLE, text);
}

bool WriteErrorLine(std::wstring_view text) noexcept
{
    return WriteTo(STD_ERROR_HANDLE, text);
}

} // namespace console
