#include "console/Colours.h"

#include <windows.h>

namespace console
{

namespace
{

bool AreDeclined() noexcept
{
    constexpr DWORD empty = 1; // its terminating zero
    return GetEnvironmentVariableW(L"NO_COLOR", nullptr, 0) > empty;
}

} // namespace

bool TakesColours() noexcept
{
    auto* const output = GetStdHandle(STD_OUTPUT_HANDLE);
    DWORD mode = 0;
    return !AreDeclined() && GetConsoleMode(output, &mode) != FALSE &&
           SetConsoleMode(output, mode | ENABLE_PROCESSED_OUTPUT | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != FALSE;
}

} // namespace console
