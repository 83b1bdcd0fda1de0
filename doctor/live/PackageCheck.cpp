#include "doctor/live/PackageCheck.h"

#include "doctor/base/SystemText.h"
#include "doctor/live/MakeFinding.h"
#include "doctor/live/Sentences.h"
#include "doctor/live/SystemFunction.h"

namespace doctor
{

namespace
{

constexpr wchar_t library[] = L"kernel32.dll";

using PackagesByFamily = LONG WINAPI(PCWSTR family, UINT32* count, PWSTR* names, UINT32* length, PWSTR buffer);
using PathByName = LONG WINAPI(PCWSTR name, UINT32* length, PWSTR path);

Finding Installed(std::string const& what)
{
    return Worked(Stage::Package, what);
}

Finding NotInstalled()
{
    return Failed(Stage::Package, "The package is not installed for this user.",
                  "It was never installed, was removed, or is installed for another user: packages are installed "
                  "for each user.",
                  "Install it as this user. If that is refused, Get-AppPackageLog says why.");
}

} // namespace

Packages PackagesOfFamily(std::wstring const& family)
{
    auto* const find = SystemFunction<PackagesByFamily>(library, "GetPackagesByPackageFamily");
    if (find == nullptr)
    {
        return {ERROR_PROC_NOT_FOUND, {}};
    }
    UINT32 count = 0;
    UINT32 length = 0;
    auto error = find(family.c_str(), &count, nullptr, &length, nullptr);
    std::vector<PWSTR> names(count);
    std::wstring buffer(length, L'\0');
    if (error == ERROR_INSUFFICIENT_BUFFER)
    {
        error = find(family.c_str(), &count, names.data(), &length, buffer.data());
    }
    return error == ERROR_SUCCESS ? Packages{0, {names.begin(), names.begin() + count}} : Packages{error, {}};
}

std::optional<std::wstring> FolderOfPackage(std::wstring const& name)
{
    auto* const find = SystemFunction<PathByName>(library, "GetPackagePathByFullName");
    UINT32 length = 0;
    if (find == nullptr || find(name.c_str(), &length, nullptr) != ERROR_INSUFFICIENT_BUFFER)
    {
        return std::nullopt;
    }
    std::wstring path(length, L'\0');
    if (find(name.c_str(), &length, path.data()) != ERROR_SUCCESS)
    {
        return std::nullopt;
    }
    return path.substr(0, path.find(L'\0'));
}

Finding PackageFinding(Packages const& packages, std::optional<ConnectionStatus> status)
{
    if (!packages.names.empty())
    {
        std::string names;
        for (auto const& name : packages.names)
        {
            names += (names.empty() ? "" : ", ") + Narrow(name);
        }
        return Installed("The package is installed: " + names + ".");
    }
    if (status == ConnectionStatus::Success)
    {
        return Installed("The package is installed: its app service opens.");
    }
    if (status == ConnectionStatus::AppNotInstalled || packages.error == ERROR_SUCCESS)
    {
        return NotInstalled();
    }
    return CannotBeTold(Stage::Package,
                        "Whether the package is installed cannot be told: " +
                            SystemText(static_cast<unsigned long>(packages.error)) + ".",
                        "Look with Get-AppxPackage in a PowerShell.");
}

} // namespace doctor
