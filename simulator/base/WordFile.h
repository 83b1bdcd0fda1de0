#pragma once
#include <string>
#include <vector>

namespace sim
{

// A text file in UTF-8 whose lines are words, as SplitWords takes them: what the services keep on the device, to be
// read by people too.

// No lines for a file that is missing; lines that cannot be split are left out. Throws Error for one that cannot be
// read.
std::vector<std::vector<std::wstring>> ReadWordFile(std::wstring const& path);

// Replaces the whole file at once: a reader, also after a crash, finds the old lines or the new ones. Throws
// Error.
void WriteWordFile(std::wstring const& path, std::vector<std::vector<std::wstring>> const& lines);

} // namespace sim
