#pragma once
#include "doctor/log/LogFolder.h"

#include <filesystem>
#include <vector>

namespace doctor
{

// The log files that the paths name: each file itself, and of a folder all files in it and below whose names end in
// ".log". Each once, in the order in which they were written: by the time of the first line in them, those without one
// first; a live file behind its copies, also where the clock was set back between them; files that begin at the same
// time by name. Throws Error when a path leads nowhere, a folder has no log, or none of them can be read.
FoundLogs FindLogs(std::vector<std::filesystem::path> const& paths);

} // namespace doctor
