#include "helper/Console.h"

#include "utils/Utf8.h"

#include <windows.h>

namespace helper
{

namespace
{

// One write for a line, which a pipe and a file keep together.
void WriteTo(DWORD stream, std::wstring_view text) noexcept
{
    auto line = zant::ToUtf8(text);
    if (!line)
    {
        return;
    }
    *line += '\n';
    DWORD written = 0;
    WriteFile(GetStdHandle(stream), line->data(), static_cast<DWORD>(line->size()), &written, nullptr);
}

} // namespace

void WriteLine(std::wstring_view text) noexcept
{
    WriteTo(STD_OUTPUT_HANDLE, text);
}

void WriteErrorLine(std::wstring_view text) noexcept
{
    WriteTo(STD_ERROR_HANDLE, text);
}

} // namespace helper
