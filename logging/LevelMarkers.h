#pragma once
#include "utils/LogLevel.h"

#include <string>
#include <string_view>

namespace zant
{

// The threshold that the marker files in `folder` select; their content does not matter. The first one that exists
// counts: `fileName` with the extension ".trace", then ".debug", then "pvq.trace", then "pvq.debug". Info when none
// exists. Throws std::bad_alloc only.
LogLevel LevelFromMarkers(std::wstring const& folder, std::wstring_view fileName);

} // namespace zant
