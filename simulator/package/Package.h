#pragma once
#include "simulator/package/Manifest.h"
#include "simulator/protocol/Device.h"

#include <string>

namespace sim
{

// A package in a folder: its manifest and its files.
struct Package
{
    std::wstring folder;
    Manifest manifest;

    std::wstring FamilyName() const;

    std::wstring Executable() const { return folder + L"\\" + manifest.executable; }

    // Empty when the package has no desktop component.
    std::wstring DesktopExecutable() const;
};

// Reads a package's folder and checks that the application's executable exists. Throws Error with what is missing. A
// missing desktop component is no error: as on the platform, only its launch fails.
Package OpenPackage(std::wstring const& folder);

// The package that is registered on a device. Throws Error when there is none.
Package RegisteredPackage(Device const& device);

// The folder named by the environment variable VELMO_SIM_PACKAGE. Throws Error when it is not set.
std::wstring PackageFolderFromEnvironment();

} // namespace sim
