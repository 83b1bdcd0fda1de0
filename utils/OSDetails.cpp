#include "utils/OSDetails.h"

#include "utils/UtilsLog.h"

#include <bit>
#include <windows.h>

namespace zant
{

namespace
{

constexpr wchar_t category[] = L"OSUtils";

// A function that some systems lack; null there.
template <typename Function>
Function FindInKernel(char const* name) noexcept
{
    auto* const kernel = GetModuleHandleW(L"kernel32");
    return std::bit_cast<Function>(kernel ? GetProcAddress(kernel, name) : nullptr);
}

std::uint32_t ArchitectureOf(USHORT nativeMachine) noexcept
{
    switch (nativeMachine)
    {
    case IMAGE_FILE_MACHINE_AMD64:
        return 1;
    case IMAGE_FILE_MACHINE_ARM64:
        return 2;
    default:
        return 0;
    }
}

// Sets bits only on success.
bool AskIsWow64Process(std::uint32_t& bits) noexcept
{
    auto const isWow64Process = FindInKernel<decltype(&IsWow64Process)>("IsWow64Process");
    if (!isWow64Process)
    {
        LogFromUtils(LogLevel::Error, category, L"Inside _GetOSDetailsDeprecated. Failed to find IsWow64Process");
        return false;
    }
    BOOL isEmulated = FALSE;
    if (!isWow64Process(GetCurrentProcess(), &isEmulated))
    {
        LogFromUtils(LogLevel::Error, category, L"Inside _GetOSDetailsDeprecated. IsWow64Process failed with %d",
                     GetLastError());
        return false;
    }
    bits = isEmulated == TRUE ? 64 : 32;
    return true;
}

} // namespace

bool _GetOSDetails(std::uint32_t& bits, std::uint32_t& architecture) noexcept
{
    bits = 64;
    auto const isWow64Process2 = FindInKernel<decltype(&IsWow64Process2)>("IsWow64Process2");
    if (!isWow64Process2)
    {
        LogFromUtils(LogLevel::Error, category, L"Inside _GetOSDetails. Failed to find IsWow64Process2");
        return _GetOSDetailsDeprecated(bits, architecture);
    }
    USHORT processMachine = 0;
    USHORT nativeMachine = 0;
    if (!isWow64Process2(GetCurrentProcess(), &processMachine, &nativeMachine))
    {
        LogFromUtils(LogLevel::Error, category, L"Inside _GetOSDetails. IsWow64Process2 failed with %d",
                     GetLastError());
        return _GetOSDetailsDeprecated(bits, architecture);
    }
    architecture = ArchitectureOf(nativeMachine);
    return true;
}

bool _GetOSDetailsDeprecated(std::uint32_t& bits, std::uint32_t& architecture) noexcept
{
    auto const isKnown = AskIsWow64Process(bits);
    architecture = bits != 32 ? 1 : 0;
    return isKnown;
}

} // namespace zant
