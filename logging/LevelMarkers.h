#pragma once
#include "utils/LogLevel.h"

#include <string>
#include <string_view>

namespace zant
{

// The threshold that the marker files in `folder` ask for; their content does not matter. In this order: `fileName`
// with the extension ".trace", then ".debug", then "pvq.trace", then "pvq.debug"; without any it is Info.
// Throws std::bad_alloc only.
LogLevel LevelFromMarkers(std::wstring const& folder, std::wstring_view fileName);

} // namespace zant
