#include "utils/SuiteFolder.h"

#include "utils/OSDetails.h"
#include "utils/WideScan.h"

#include <new>
#include <windows.h>

namespace zant
{

namespace
{

constexpr std::uint32_t arm64 = 2;

bool IsArm64Machine() noexcept
{
    std::uint32_t bits = 0;
    std::uint32_t architecture = 0;
    _GetOSDetails(bits, architecture); // sets the architecture also on failure
    return architecture == arm64;
}

} // namespace

// Reads the value that the shell itself uses. Asking the shell would load it and its dependencies: 26 ms under Wine,
// about as much as the rest of the start up to the first line, at each start.
bool GetSuiteInstallFolder(std::wstring& result) noexcept
try
{
    auto const* const name = IsArm64Machine() ? L"ProgramFilesDir" : L"ProgramFilesDir (x86)";
    wchar_t folder[MAX_PATH];
    DWORD size = sizeof folder;
    auto const error = RegGetValueW(HKEY_LOCAL_MACHINE, L"Software\\Microsoft\\Windows\\CurrentVersion", name,
                                    RRF_RT_REG_SZ, nullptr, folder, &size);
    if (error != ERROR_SUCCESS || folder[0] == L'\0')
    {
        return false;
    }
    result = std::wstring(ViewOf(folder)) + L"\\Velmo\\Velmo Tessaline";
    return true;
}
catch (std::bad_alloc const&)
{
    return false;
}

} // namespace zant
