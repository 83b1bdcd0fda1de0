#include "utils/OSVersion.h"

#include "utils/DecimalText.h"
#include "utils/OSName.h"

#include <new>
#include <windows.h>

namespace zant
{

namespace
{

// Compares the three numbers as one version: a later number counts when those before it are equal.
bool IsAtLeast(std::uint32_t major, std::uint32_t minor, std::uint32_t servicePack) noexcept
{
    OSVERSIONINFOEXW wanted = {};
    wanted.dwOSVersionInfoSize = sizeof wanted;
    wanted.dwMajorVersion = major;
    wanted.dwMinorVersion = minor;
    wanted.wServicePackMajor = static_cast<WORD>(servicePack);
    auto conditions = VerSetConditionMask(0, VER_MAJORVERSION, VER_GREATER_EQUAL);
    conditions = VerSetConditionMask(conditions, VER_MINORVERSION, VER_GREATER_EQUAL);
    conditions = VerSetConditionMask(conditions, VER_SERVICEPACKMAJOR, VER_GREATER_EQUAL);
    constexpr DWORD compared = VER_MAJORVERSION | VER_MINORVERSION | VER_SERVICEPACKMAJOR;
    return VerifyVersionInfoW(&wanted, compared, conditions) != FALSE;
}

// The number before the first one from `first` to `last` that is not reached; 0 when all are.
template <typename IsReached>
std::uint32_t LastReached(std::uint32_t first, std::uint32_t last, IsReached isReached) noexcept
{
    for (auto number = first; number <= last; ++number)
    {
        if (!isReached(number))
        {
            return number - 1;
        }
    }
    return 0;
}

} // namespace

bool ProbeOSVersion(OSVersion& version) noexcept
{
    version.major = LastReached(4, 14, [](auto number) { return IsAtLeast(number, 0, 0); });
    version.minor = LastReached(1, 9, [&](auto number) { return IsAtLeast(version.major, number, 0); });
    version.servicePack =
        LastReached(1, 9, [&](auto number) { return IsAtLeast(version.major, version.minor, number); });
    return true;
}

bool GetOSVersionText(OSVersion const& version, std::wstring& text) noexcept
try
{
    text = DecimalText(version.major) + L"." + DecimalText(version.minor) + L"." + DecimalText(version.servicePack);
    return true;
}
catch (std::bad_alloc const&)
{
    return false;
}

bool GetOSBuildText(std::wstring& text) noexcept
try
{
    OSVERSIONINFOEXW system = {};
    system.dwOSVersionInfoSize = sizeof system;
    if (!GetVersionExW(reinterpret_cast<OSVERSIONINFOW*>(&system)))
    {
        return false;
    }
    text = DecimalText(static_cast<std::int32_t>(system.dwBuildNumber));
    return true;
}
catch (std::bad_alloc const&)
{
    return false;
}

bool GetOSName(OSVersion const& version, std::wstring& name) noexcept
try
{
    std::wstring buildText;
    GetOSBuildText(buildText); // on failure the name is that of the earliest build
    name = OSName(version.major, version.minor, buildText.c_str());
    return true;
}
catch (std::bad_alloc const&)
{
    return false;
}

} // namespace zant
