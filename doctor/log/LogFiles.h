#pragma once
#include <filesystem>
#include <vector>

namespace doctor
{

// The log files that the paths name: each file itself, and of a folder all files in it and below whose names end in
// ".log". Each once, in the order in which they were written: by the time of the first line in them, those without one
// first; files that begin at the same time by name, with the live file behind its copies. Throws Error when a path
// leads nowhere, or a folder has no log.
std::vector<std::filesystem::path> LogFilesAt(std::vector<std::filesystem::path> const& paths);

} // namespace doctor
