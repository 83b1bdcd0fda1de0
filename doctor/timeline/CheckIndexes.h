#pragma once
#include "doctor/timeline/Timeline.h"

namespace doctor
{

// Throws std::out_of_range unless each index in the timeline is that of a line or a file.
void CheckIndexes(Timeline const& timeline);

} // namespace doctor
