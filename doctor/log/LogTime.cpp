#include "doctor/log/LogTime.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace doctor
{

std::optional<LogTime> TimeIn(std::string_view text, std::string_view form)
{
    using namespace std::chrono;
    constexpr std::string_view letters = "YMDhmsf";
    if (text.size() != form.size())
    {
        return std::nullopt;
    }
    std::array<int, letters.size()> numbers{};
    for (std::size_t at = 0; at < form.size(); ++at)
    {
        auto const letter = letters.find(form[at]);
        auto const isDigit = text[at] >= '0' && text[at] <= '9';
        if (letter == letters.npos ? text[at] != form[at] : !isDigit)
        {
            return std::nullopt;
        }
        if (letter != letters.npos)
        {
            numbers[letter] = numbers[letter] * 10 + (text[at] - '0');
        }
    }
    auto const [writtenYear, month, day, hour, minute, second, millisecond] = numbers;
    auto const century = std::ranges::count(form, 'Y') == 2 ? 2000 : 0;
    auto const date = year(century + writtenYear) / month / day;
    if (!date.ok() || hour > 23 || minute > 59 || second > 59)
    {
        return std::nullopt;
    }
    return local_days(date) + hours(hour) + minutes(minute) + seconds(second) + milliseconds(millisecond);
}

std::string TimeText(LogTime time)
{
    using namespace std::chrono;
    auto const day = floor<days>(time);
    year_month_day const date(day);
    hh_mm_ss const clock(time - day);
    char text[40];
    auto const length =
        std::snprintf(text, sizeof text, "%04d-%02u-%02u %02d:%02d:%02d.%03d", static_cast<int>(date.year()),
                      static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                      static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                      static_cast<int>(clock.seconds().count()), static_cast<int>(clock.subseconds().count()));
    return {text, static_cast<std::size_t>(length)};
}

} // namespace doctor
