#pragma once
#include <functional>
#include <string>
#include <vector>

namespace sim
{

// A text file in UTF-8 whose lines are words, as SplitWords takes them: what the services keep on the device, to be
// read by people too.

// Gives the words of each line to `take`, which throws Error for those that make no sense; a missing file has no lines.
// Gives what is wrong with the file and where, the last of it; empty: nothing.
std::wstring ReadWordFile(std::wstring const& path, std::function<void(std::vector<std::wstring> const&)> const& take);

// Replaces the whole file at once: a reader, also after a crash, finds the old lines or the new ones. Throws
// Error.
void WriteWordFile(std::wstring const& path, std::vector<std::vector<std::wstring>> const& lines);

} // namespace sim
