#include "doctor/live/ComponentCheck.h"

#include "doctor/live/ComponentFile.h"
#include "helper/PackageFacts.h"

namespace doctor
{

Finding ComponentFinding(Packages const& packages)
{
    auto const folder = packages.names.empty() ? std::nullopt : FolderOfPackage(packages.names.front());
    return folder ? ComponentFileFinding(*folder + L"\\" + desktopComponent)
                  : ComponentCannotBeTold("the package's folder is not known");
}

} // namespace doctor
