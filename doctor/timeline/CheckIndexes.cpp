#include "doctor/timeline/CheckIndexes.h"

#include <stdexcept>

namespace doctor
{

namespace
{

void Check(std::size_t index, std::size_t size)
{
    if (index >= size)
    {
        throw std::out_of_range("a timeline refers to a line or a file that it does not hold");
    }
}

} // namespace

void CheckIndexes(Timeline const& timeline)
{
    for (auto const& line : timeline.lines)
    {
        Check(line.file, timeline.files.size());
    }
    for (auto const& span : timeline.spans)
    {
        for (auto const index : span.lines)
        {
            Check(index, timeline.lines.size());
        }
    }
    for (auto const& mark : timeline.marks)
    {
        if (mark.line)
        {
            Check(*mark.line, timeline.lines.size());
        }
    }
}

} // namespace doctor
