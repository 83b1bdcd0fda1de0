#include "simulator/base/Console.h"

#include "simulator/base/Text.h"

#include <windows.h>

namespace sim
{

namespace
{

void WriteTo(DWORD handle, std::wstring_view text)
{
    auto const bytes = ToUtf8(text) + "\n";
    DWORD written = 0;
    WriteFile(GetStdHandle(handle), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
}

} // namespace

void WriteLine(std::wstring_view text)
{
    WriteTo(STD_OUTPUT_HANDLE, text);
}

void WriteErrorLine(std::wstring_view text)
{
    WriteTo(STD_ERROR_HANDLE, text);
}

} // namespace sim
