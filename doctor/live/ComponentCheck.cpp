#include "doctor/live/ComponentCheck.h"

#include "doctor/base/SystemText.h"
#include "doctor/live/MakeFinding.h"
#include "doctor/live/Sentences.h"
#include "helper/PackageFacts.h"

#include <windows.h>

namespace doctor
{

namespace
{

Finding ComponentMissing(std::string const& path)
{
    return Failed(Stage::ComponentLaunched, "The desktop component is not there: " + path + ".",
                  "The package was made without it, or a virus scanner took it away.",
                  "Look into the scanner's list, and install the suite's own package again.");
}

Finding ComponentCannotBeTold(std::string const& why)
{
    return CannotBeTold(Stage::ComponentLaunched, "Whether the desktop component is there cannot be told: " + why + ".",
                        "Look for its file in the folder that Get-AppxPackage names.");
}

} // namespace

Finding ComponentFinding(Packages const& packages)
{
    auto const folder = packages.names.empty() ? std::nullopt : FolderOfPackage(packages.names.front());
    if (!folder)
    {
        return ComponentCannotBeTold("the package's folder is not known");
    }
    auto const path = *folder + L"\\" + desktopComponent;
    auto const attributes = GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES)
    {
        auto const error = GetLastError();
        return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND
                   ? ComponentMissing(Narrow(path))
                   : ComponentCannotBeTold(Narrow(path) + ": " + SystemText(error));
    }
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0
               ? ComponentMissing(Narrow(path))
               : Worked(Stage::ComponentLaunched, "The desktop component is there: " + Narrow(path) + ".");
}

} // namespace doctor
