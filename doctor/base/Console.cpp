#include "doctor/base/Console.h"

#include "doctor/base/Error.h"
#include "doctor/base/SystemText.h"

#include <string>
#include <windows.h>

namespace doctor
{

namespace
{

// One write for a line, which a pipe and a file keep together.
bool WriteTo(DWORD stream, std::string_view text)
{
    auto const line = std::string(text) + '\n';
    DWORD written = 0;
    return WriteFile(GetStdHandle(stream), line.data(), static_cast<DWORD>(line.size()), &written, nullptr) != FALSE;
}

} // namespace

void WriteLine(std::string_view text)
{
    if (!WriteTo(STD_OUTPUT_HANDLE, text))
    {
        throw Error("standard output: " + SystemText(GetLastError()));
    }
}

void WriteErrorLine(std::string_view text)
{
    WriteTo(STD_ERROR_HANDLE, text);
}

} // namespace doctor
