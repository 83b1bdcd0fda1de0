#include "simulator/log/LogLine.h"

#include "simulator/base/Text.h"

namespace sim
{

namespace
{

constexpr std::wstring_view separator = L" | ";

// "01/05/24 09:30:12:045", in the C locale's order: month, day, year.
std::optional<Moment> ParseStamp(std::wstring_view stamp)
{
    if (stamp.size() != 21)
    {
        return std::nullopt;
    }
    auto const part = [&](std::size_t at) { return std::wstring(stamp.substr(at, 2)); };
    return ParseDateAndTime(L"20" + part(6) + L"-" + part(0) + L"-" + part(3), stamp.substr(9));
}

} // namespace

std::wstring LogLine::Text() const
{
    return TimeText(time) + L" " + LeftAligned(level, 5) + L" " + LeftAligned(category, 10) + L" " + message;
}

std::optional<LogLine> ParseLogLine(std::wstring_view text)
{
    LogLine line;
    std::wstring stamp;
    std::wstring unused;
    // The message may contain separators of its own.
    for (auto* const field : {&stamp, &line.level, &unused, &line.product, &line.component, &line.category,
                              &line.detail, &line.origin, &line.thread})
    {
        auto const end = text.find(separator);
        if (end == std::wstring_view::npos)
        {
            return std::nullopt;
        }
        *field = text.substr(0, end);
        text.remove_prefix(end + separator.size());
    }
    auto const time = ParseStamp(stamp);
    if (!time || line.level.size() < 2 || !line.level.starts_with(L'[') || !line.level.ends_with(L']'))
    {
        return std::nullopt;
    }
    line.time = *time;
    line.level = line.level.substr(1, line.level.size() - 2);
    line.message = text;
    return line;
}

} // namespace sim
