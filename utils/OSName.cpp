#include "utils/OSName.h"

#include <cwchar>

namespace zant
{

namespace
{

struct KnownSystem
{
    std::uint32_t majorVersion;
    std::uint32_t minorVersion;
    std::wstring_view name;
};

constexpr KnownSystem knownSystems[] = {
    {4, 0, L"Windows 95"}, {4, 10, L"Windows 98"}, {4, 90, L"Windows ME"},   {5, 0, L"Windows 2000"},
    {5, 1, L"Windows XP"}, {5, 2, L"Windows XP"},  {6, 0, L"Windows Vista"}, {6, 1, L"Windows 7"},
    {6, 2, L"Windows 8"},  {6, 3, L"Windows 8.1"},
};

// wcstoll is the C++ conversion that parses and saturates like _wtoi64; long long has 64 bits on all platforms.
std::int32_t BuildNumber(wchar_t const* buildText) noexcept
{
    return static_cast<std::int32_t>(std::wcstoll(buildText, nullptr, 10));
}

} // namespace

std::wstring_view OSName(std::uint32_t majorVersion, std::uint32_t minorVersion, wchar_t const* buildText) noexcept
{
    constexpr std::int32_t firstBuildOfWindows11 = 22000;
    if (majorVersion == 10)
    {
        return BuildNumber(buildText) >= firstBuildOfWindows11 ? L"Windows 11" : L"Windows 10";
    }
    for (auto const& system : knownSystems)
    {
        if (system.majorVersion == majorVersion && system.minorVersion == minorVersion)
        {
            return system.name;
        }
    }
    return L"UNKNOWN";
}

} // namespace zant
