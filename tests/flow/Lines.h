#pragma once
#include <string>
#include <vector>

namespace test
{

// Lines of a log, or whatever else comes in order and is compared as text.
struct Lines : std::vector<std::wstring>
{
    using std::vector<std::wstring>::vector;

    explicit Lines(std::vector<std::wstring> lines) : std::vector<std::wstring>(std::move(lines)) {}
};

inline Lines operator+(Lines lines, Lines const& more)
{
    lines.insert(lines.end(), more.begin(), more.end());
    return lines;
}

// Each on a line of its own, for a failure's message.
inline std::wstring Shown(std::vector<std::wstring> const& lines)
{
    std::wstring text;
    for (auto const& line : lines)
    {
        text += L"\n  " + line;
    }
    return text;
}

} // namespace test
