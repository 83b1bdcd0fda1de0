#include "doctor/show/Filter.h"

#include <algorithm>

namespace doctor
{

namespace
{

char ToLower(char character)
{
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

bool Contains(std::string_view text, std::string_view part)
{
    return !std::ranges::search(text, part, {}, ToLower, ToLower).empty() || part.empty();
}

} // namespace

bool Filter::Matches(LogLine const& line) const
{
    return (!since || line.time >= *since) && (!thread || line.thread == *thread) && (!level || line.level >= *level) &&
           (!category || std::ranges::equal(line.category, *category, {}, ToLower, ToLower)) &&
           Contains(line.message, text);
}

bool Filter::MatchesText(std::string_view other) const
{
    return !since && !thread && !level && !category && Contains(other, text);
}

std::optional<LogTime> ParseTime(std::string_view text)
{
    std::optional<LogTime> time;
    for (auto const* const form :
         {"YYYY-MM-DD", "YYYY-MM-DD hh:mm", "YYYY-MM-DDThh:mm", "YYYY-MM-DD hh:mm:ss", "YYYY-MM-DDThh:mm:ss"})
    {
        time = time ? time : TimeIn(text, form);
    }
    return time;
}

} // namespace doctor
