#pragma once
#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

namespace doctor
{

// The text with blanks behind it: at least one, and as many as the width takes.
inline std::string Column(std::string_view text, std::size_t width)
{
    std::string column(text);
    column.resize(std::max(width, text.size() + 1), ' ');
    return column;
}

} // namespace doctor
