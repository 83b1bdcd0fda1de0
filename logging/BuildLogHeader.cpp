#include "logging/BuildLogHeader.h"

#include "utils/FileVersion.h"
#include "utils/Locale.h"
#include "utils/OSVersion.h"
#include "utils/SuiteFolder.h"
#include "utils/WideScan.h"

#include <new>
#include <string_view>
#include <windows.h>
// After windows.h, whose types it needs.
#include <shlwapi.h>

namespace zant
{

namespace
{

constexpr std::wstring_view asterisks =
    L"******************************************************************************";
static_assert(asterisks.size() == 78);

// Empty when the parts do not form a path or memory is short.
std::wstring Joined(std::wstring const& folder, std::wstring const& relative) noexcept
try
{
    if (folder.empty() || relative.empty())
    {
        return {};
    }
    auto path = folder;
    path.resize(folder.size() + 11 + relative.size()); // the buffer of PathAppendW, which takes no size
    if (!PathAppendW(path.data(), relative.c_str()))
    {
        return {};
    }
    path.resize(ViewOf(path.c_str()).size());
    return path;
}
catch (std::bad_alloc const&)
{
    return {};
}

// False when the suite is not installed or its program has no version.
bool GetSuiteVersion(std::wstring& version)
{
    std::wstring folder;
    GetSuiteInstallFolder(folder); // empty on failure
    auto const program = Joined(folder, L"HOV\\Tessaline.exe");
    return PathFileExistsW(program.c_str()) != FALSE && GetFileVersionText(program, version);
}

} // namespace

LogHeaderText BuildLogHeader()
{
    std::wstring locale;
    GetUserLocale(locale);
    OSVersion version = {};
    ProbeOSVersion(version);
    std::wstring name;
    GetOSName(version, name);
    std::wstring versionText;
    GetOSVersionText(version, versionText);

    LogHeaderText header;
    if (std::wstring suiteVersion; GetSuiteVersion(suiteVersion))
    {
        header.entries[L"HOV Version: "] = std::move(suiteVersion);
    }
    header.title = asterisks;
    header.entries[L"OS Name: "] = std::move(name);
    header.entries[L"OS Version: "] = std::move(versionText);
    header.entries[L"OS Locale: "] = std::move(locale);
    header.entries[L"Bit: "] = L"64"; // fixed: not measured
    GetOSBuildText(header.entries[L"OS Build Version: "]);
    header.closing = asterisks;
    return header;
}

} // namespace zant
