#include "simulator/scenario/Timeline.h"

#include "simulator/base/Text.h"

#include <algorithm>
#include <limits>

namespace sim
{

namespace
{

struct Style
{
    std::wstring_view name;
    std::wstring_view colour;
};

// By Source.
constexpr Style styles[] = {{L"step    ", L"\x1b[1m"},
                            {L"platform", L"\x1b[36m"},
                            {L"desktop ", L"\x1b[33m"},
                            {L"helper  ", L"\x1b[35m"},
                            {L"log     ", L"\x1b[32m"}};

// Seconds since the start: "  3.021".
std::wstring Elapsed(Moment duration)
{
    auto const milliseconds = std::max<Moment>(duration, 0);
    return RightAligned(milliseconds / 1000, 3) + L"." + RightAligned(milliseconds % 1000, 3, L'0');
}

} // namespace

Timeline::Timeline(std::function<void(std::wstring_view)> write, Colour colour)
    : m_write(std::move(write)), m_colour(colour), m_start(Now())
{
}

void Timeline::Add(Item item)
{
    m_held.emplace(item.time, std::move(item));
}

void Timeline::ShowSettled()
{
    ShowUntil(Now() - holdMilliseconds);
}

void Timeline::ShowAll()
{
    ShowUntil(std::numeric_limits<Moment>::max());
}

void Timeline::ShowUntil(Moment time)
{
    while (!m_held.empty() && m_held.begin()->first <= time)
    {
        auto& item = m_held.begin()->second;
        auto const& style = styles[static_cast<std::size_t>(item.source)];
        auto line = Elapsed(item.time - m_start) + L"  " + std::wstring(style.name) + L"  " + item.text;
        m_write(m_colour == Colour::Yes ? std::wstring(style.colour) + line + L"\x1b[0m" : line);
        m_shown.push_back(std::move(item));
        m_held.erase(m_held.begin());
    }
}

} // namespace sim
