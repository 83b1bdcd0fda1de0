#pragma once
#include <string>

namespace sim
{

// From now on a crash of this process leaves its place in a file, in a folder that is there: the instruction, then its
// callers, each as MODULE+OFFSET, separated by spaces. Windows writes the first of them into its event log.
void ReportCrashes(std::wstring const& file);

} // namespace sim
