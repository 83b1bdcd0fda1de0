#pragma once
#include "doctor/live/AppService.h"
#include "doctor/verdict/Finding.h"

#include <optional>
#include <string>
#include <vector>

namespace doctor
{

// The packages of a family that are installed for this user.
struct Packages
{
    long error = 0;                  // of the system, which then knows of none
    std::vector<std::wstring> names; // with version and architecture
};

Packages PackagesOfFamily(std::wstring const& family);

// The folder in which a package is installed; nothing when the system does not tell.
std::optional<std::wstring> FolderOfPackage(std::wstring const& name);

// status: how the app service answered, which decides where the system's list does not; nothing: it did not.
Finding PackageFinding(Packages const& packages, std::optional<ConnectionStatus> status);

} // namespace doctor
