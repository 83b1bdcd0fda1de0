#pragma once
#include "doctor/live/PackageCheck.h"

namespace doctor
{

// Whether the desktop component's file is in the package's folder.
Finding ComponentFinding(Packages const& packages);

} // namespace doctor
