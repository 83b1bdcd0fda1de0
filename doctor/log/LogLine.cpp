#include "doctor/log/LogLine.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace doctor
{

namespace
{

constexpr std::string_view separator = " | ";
constexpr std::size_t stampLength = 21; // 01/05/24 09:30:12:045

template <typename Number>
std::optional<Number> NumberIn(std::string_view text)
{
    Number number{};
    auto const [stopped, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && stopped == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

// In the C locale's order.
std::optional<LogTime> ParseStamp(std::string_view stamp)
{
    constexpr std::string_view form = "MM/DD/YY hh:mm:ss:fff";
    static_assert(form.size() == stampLength);
    return TimeIn(stamp, form);
}

// Takes the text up to the next separator away; nullopt when there is none.
std::optional<std::string_view> TakeField(std::string_view& text)
{
    auto const end = text.find(separator);
    if (end == text.npos)
    {
        return std::nullopt;
    }
    auto const field = text.substr(0, end);
    text.remove_prefix(end + separator.size());
    return field;
}

} // namespace

std::optional<zant::LogLevel> LevelOf(std::string_view name)
{
    using enum zant::LogLevel;
    constexpr zant::LogLevel unnamed{}; // written as "ALL"
    constexpr std::array levels = {Trace, Debug, Info, Warn, Error, Fatal, None, unnamed};
    auto const* const found =
        std::ranges::find_if(levels, [&](auto level) { return std::ranges::equal(zant::LevelName(level), name); });
    return found == levels.end() ? std::nullopt : std::optional(*found);
}

std::string LevelText(zant::LogLevel level)
{
    auto const name = zant::LevelName(level);
    return {name.begin(), name.end()}; // ASCII
}

std::optional<LogLine> ParseLogLine(std::string_view text)
{
    constexpr std::size_t fieldCount = 9;
    std::array<std::string_view, fieldCount> fields;
    for (auto& field : fields)
    {
        auto const taken = TakeField(text);
        if (!taken)
        {
            return std::nullopt;
        }
        field = *taken;
    }
    auto const [stamp, bracketed, unused, product, component, category, detail, origin, threadText] = fields;
    auto const time = ParseStamp(stamp);
    auto const isBracketed = bracketed.size() > 2 && bracketed.starts_with('[') && bracketed.ends_with(']');
    auto const level = isBracketed ? LevelOf(bracketed.substr(1, bracketed.size() - 2)) : std::nullopt;
    auto const thread = NumberIn<std::uint32_t>(threadText);
    if (!time || !level || !thread)
    {
        return std::nullopt;
    }
    auto const message = text; // the rest, with separators of its own
    return LogLine{*time, *level, product, component, category, detail, origin, *thread, message};
}

std::size_t FindGluedLine(std::string_view text)
{
    constexpr std::string_view levelBegins = " | [";
    for (auto at = text.find(levelBegins, stampLength + 1); at != text.npos; at = text.find(levelBegins, at + 1))
    {
        if (ParseStamp(text.substr(at - stampLength, stampLength)))
        {
            return at - stampLength;
        }
    }
    return text.npos;
}

} // namespace doctor
