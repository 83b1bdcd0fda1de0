#include "simulator/log/LogLine.h"

#include "simulator/base/Text.h"

#include <array>

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

std::optional<LogLine> ParseLogLine(std::wstring_view line)
{
    // Stamp, level, six fields, thread; the message may hold separators of its own.
    std::array<std::wstring, 9> fields;
    for (auto& field : fields)
    {
        auto const end = line.find(separator);
        if (end == std::wstring_view::npos)
        {
            return std::nullopt;
        }
        field = line.substr(0, end);
        line.remove_prefix(end + separator.size());
    }
    auto const time = ParseStamp(fields[0]);
    auto const& level = fields[1];
    if (!time || level.size() < 2 || level.front() != L'[' || level.back() != L']')
    {
        return std::nullopt;
    }
    return LogLine{*time,
                   level.substr(1, level.size() - 2),
                   fields[3],
                   fields[4],
                   fields[5],
                   fields[6],
                   fields[7],
                   fields[8],
                   std::wstring(line)};
}

} // namespace sim
