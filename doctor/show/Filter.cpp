#include "doctor/show/Filter.h"

#include <algorithm>
#include <array>
#include <cstdio>

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
    using namespace std::chrono;
    constexpr std::array<std::string_view, 3> forms = {"0000-00-00", "0000-00-00 00:00", "0000-00-00 00:00:00"};
    auto const fits = [&](std::string_view form) {
        return std::ranges::equal(text, form, [](char each, char kind) {
            return kind == '0' ? each >= '0' && each <= '9' : each == kind || (kind == ' ' && each == 'T');
        });
    };
    if (std::ranges::none_of(forms, fits))
    {
        return std::nullopt;
    }
    auto const number = [&](std::size_t at, std::size_t length) {
        auto value = 0;
        for (auto const digit : at < text.size() ? text.substr(at, length) : std::string_view())
        {
            value = value * 10 + (digit - '0');
        }
        return value;
    };
    auto const date = year(number(0, 4)) / number(5, 2) / number(8, 2);
    auto const hour = number(11, 2);
    auto const minute = number(14, 2);
    auto const second = number(17, 2);
    if (!date.ok() || hour > 23 || minute > 59 || second > 59)
    {
        return std::nullopt;
    }
    return local_days(date) + hours(hour) + minutes(minute) + seconds(second);
}

} // namespace doctor
