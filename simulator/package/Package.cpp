#include "simulator/package/Package.h"

#include "simulator/base/Error.h"
#include "simulator/base/Files.h"
#include "simulator/base/Process.h"
#include "simulator/package/PackageNames.h"

namespace sim
{

std::wstring Package::FamilyName() const
{
    return PackageFamilyName(manifest.name, manifest.publisher);
}

std::wstring Package::DesktopExecutable() const
{
    return manifest.desktopComponent ? folder + L"\\" + manifest.desktopComponent->executable : std::wstring();
}

Package OpenPackage(std::wstring const& folder)
{
    auto const path = FullPath(folder);
    if (!FolderExists(path))
    {
        throw Error(L"there is no folder " + path);
    }
    Package package{path, ReadManifest(path + L"\\AppxManifest.xml")};
    if (!FileExists(package.Executable()))
    {
        throw Error(L"the manifest names " + package.manifest.executable + L", which is not in " + path);
    }
    return package;
}

Package RegisteredPackage(Device const& device)
{
    if (!FileExists(device.RegistrationFile()))
    {
        throw Error(L"no package is registered: sim register FOLDER comes first");
    }
    return OpenPackage(ReadText(device.RegistrationFile()));
}

std::wstring PackageFolderFromEnvironment()
{
    auto const folder = EnvironmentValue(L"VELMO_SIM_PACKAGE");
    return folder ? *folder
                  : throw Error(L"name the package's folder, or set the environment variable VELMO_SIM_PACKAGE to it");
}

} // namespace sim
