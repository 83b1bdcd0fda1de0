#include "doctor/live/ComponentFile.h"

#include "doctor/base/SystemText.h"
#include "doctor/live/MakeFinding.h"

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

} // namespace

Finding ComponentCannotBeTold(std::string const& why)
{
    return CannotBeTold(Stage::ComponentLaunched, "Whether the desktop component is there cannot be told: " + why + ".",
                        "Look for its file in the folder that Get-AppxPackage names.");
}

Finding ComponentFileFinding(std::filesystem::path const& path)
{
    auto const attributes = GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES)
    {
        auto const error = GetLastError();
        return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND
                   ? ComponentMissing(PathText(path))
                   : ComponentCannotBeTold(FailureText(path, error));
    }
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0
               ? ComponentMissing(PathText(path))
               : Worked(Stage::ComponentLaunched, "The desktop component is there: " + PathText(path) + ".");
}

} // namespace doctor
