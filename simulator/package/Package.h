#pragma once
#include "simulator/package/Manifest.h"
#include "simulator/protocol/Device.h"

#include <string>

namespace sim
{

// A package as it lies in a folder: its manifest, and where things are.
struct Package
{
    std::wstring folder;
    Manifest manifest;

    std::wstring FamilyName() const;

    std::wstring Executable() const { return folder + L"\\" + manifest.executable; }

    // Empty when the package has no desktop component.
    std::wstring DesktopExecutable() const;
};

// Reads a package's folder and checks that the application's executable is there. Throws Error with what is missing.
// A missing desktop component is no error here: as on the platform, it shows when it is to be launched.
Package OpenPackage(std::wstring const& folder);

// The package that is registered on a device. Throws Error when there is none.
Package RegisteredPackage(Device const& device);

// The folder named by the environment variable VELMO_SIM_PACKAGE. Throws Error when it is not set.
std::wstring PackageFolderFromEnvironment();

} // namespace sim
