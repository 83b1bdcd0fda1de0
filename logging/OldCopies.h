#pragma once
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zant
{

// Which of the names in a log's folder go when old copies are cleaned up. `base` is the live log's name without
// extension; names that do not begin with it (the case counts) are not touched. Of the others stay: the live log and
// the copies whose name begins with one of `dayPrefixes`, but no more than the five that sort highest as text. (Dates
// are not padded with zeros, so that is not always the order of time.)
std::vector<std::wstring> CopiesToDelete(std::span<std::wstring const> names, std::wstring_view base,
                                         std::wstring_view liveName, std::span<std::wstring const> dayPrefixes);

} // namespace zant
