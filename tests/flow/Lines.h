#pragma once
#include <string>
#include <vector>

namespace test
{

// Lines of a log, or other strings that are compared in order.
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

// For a failure's message, each on its own line.
inline std::wstring Shown(std::vector<std::wstring> const& lines)
{
    std::wstring text;
    for (auto const& line : lines)
    {
        text += L"\n  " + line;
    }
    return text.empty() ? L"\n  (nothing)" : text;
}

} // namespace test
