#pragma once
#include "doctor/stories/Line.h"

#include <vector>

namespace test
{

// Each line of the app, in the order of the enumeration.
inline std::vector<doctor::Line> AllLines()
{
    std::vector<doctor::Line> lines;
    for (auto at = static_cast<int>(doctor::Line::Other) + 1; at <= static_cast<int>(doctor::Line::Withheld); ++at)
    {
        lines.push_back(static_cast<doctor::Line>(at));
    }
    return lines;
}

} // namespace test
