#pragma once
#include "explore/stress/StressCount.h"

namespace explore::stress
{

// The log and all its copies, whatever became of them; the copies in the order of their names. Throws sim::Error.
std::vector<LogText> ReadLogTexts(std::wstring const& folder, std::wstring const& log);

} // namespace explore::stress
