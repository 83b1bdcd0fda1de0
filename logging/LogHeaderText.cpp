#include "logging/LogHeaderText.h"

namespace zant
{

void LogHeaderText::Merge(LogHeaderText const& other)
{
    if (!other.title.empty())
    {
        title = other.title;
    }
    for (auto const& [key, value] : other.entries)
    {
        entries.insert_or_assign(key, value);
    }
    if (!other.closing.empty())
    {
        closing = other.closing;
    }
}

} // namespace zant
