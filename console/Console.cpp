#include "console/Console.h"

#include "utils/Utf8.h"

#include <string>
#include <windows.h>

namespace console
{

namespace
{

// One write for a line, which a pipe and a file keep together.
bool WriteTo(DWORD stream, std::string_view text) noexcept
{
    auto const line = std::string(text) + '\n';
    DWORD written = 0;
    return WriteFile(GetStdHandle(stream), line.data(), static_cast<DWORD>(line.size()), &written, nullptr) != FALSE;
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
