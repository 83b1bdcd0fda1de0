#include "simulator/protocol/Event.h"

#include "simulator/base/Error.h"
#include "simulator/base/Text.h"
#include "simulator/base/Words.h"

namespace sim
{

std::wstring Event::Line() const
{
    return DateAndTimeText(time) + L" " + Text();
}

std::wstring Event::Text() const
{
    auto text = kind;
    for (auto const& detail : details)
    {
        // The name stays outside the quotes, for readability: command='"a.exe" /b'.
        auto const value = detail.find(L'=') + 1;
        text += L" " + detail.substr(0, value) + Quoted(std::wstring_view(detail).substr(value));
    }
    return text;
}

std::optional<std::wstring> Event::Detail(std::wstring_view name) const
{
    auto const start = sim::Detail(name, L"");
    for (auto const& detail : details)
    {
        if (detail.starts_with(start))
        {
            return detail.substr(start.size());
        }
    }
    return std::nullopt;
}

std::wstring Detail(std::wstring_view name, std::wstring_view value)
{
    return std::wstring(name) + L"=" + std::wstring(value);
}

std::optional<Event> ParseEvent(std::wstring_view line)
try
{
    auto const words = SplitWords(line);
    auto const time = words.size() < 3 ? std::nullopt : ParseDateAndTime(words[0], words[1]);
    if (!time)
    {
        return std::nullopt;
    }
    return Event{*time, words[2], {words.begin() + 3, words.end()}};
}
catch (Error const&)
{
    return std::nullopt;
}

} // namespace sim
