#pragma once
#include <string>
#include <string_view>
#include <vector>

namespace sim
{

// One line of a scenario file that is neither empty nor a comment.
struct Step
{
    std::size_t line = 0; // counted from 1
    std::wstring text;
    std::vector<std::wstring> words;
};

// Throws Error that names a line that cannot be split into words; also when there is no step.
std::vector<Step> ParseScenario(std::wstring_view text);

// A file in UTF-8, with a byte-order mark or without. Throws Error.
std::vector<Step> ReadScenario(std::wstring const& path);

} // namespace sim
