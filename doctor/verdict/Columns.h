#pragma once
#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

namespace doctor
{

// Columns of what people read, for the longest names of a result and of a stage.
inline constexpr std::size_t resultWidth = 16;
inline constexpr std::size_t stageWidth = 19;

inline std::string Column(std::string_view text, std::size_t width)
{
    std::string column(text);
    column.resize(std::max(width, text.size() + 1), ' ');
    return column;
}

} // namespace doctor
