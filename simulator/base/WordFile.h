#pragma once
#include <functional>
#include <string>
#include <vector>

namespace sim
{

// A UTF-8 text file whose lines consist of words for SplitWords: the format of what the platform keeps on the device,
// readable for people, too.

// Passes the words of each line to `take`, which throws Error for invalid ones; a missing file has no lines. Returns
// the last error with its line; empty when there is none.
std::wstring ReadWordFile(std::wstring const& path, std::function<void(std::vector<std::wstring> const&)> const& take);

// Replaces the file atomically: a reader, also after a crash, finds either the old lines or the new ones. Throws Error.
void WriteWordFile(std::wstring const& path, std::vector<std::vector<std::wstring>> const& lines);

} // namespace sim
