#include "logging/ElementPlaces.h"

#include "logging/UnitScan.h"

namespace zant
{

namespace
{

constexpr Utf16Unit Lowered(Utf16Unit unit) noexcept
{
    return unit >= 'A' && unit <= 'Z' ? static_cast<Utf16Unit>(unit + ('a' - 'A')) : unit;
}

// A bit for a code unit, the same for both cases of a letter.
constexpr std::uint32_t BitOf(Utf16Unit unit) noexcept
{
    return 1u << (unit % 32);
}

// Whether a string begins with a key and the end of an element.
bool BeginsWith(Utf16View text, Utf16View key) noexcept
{
    return text.size() > key.size() && text[key.size()] == '>' &&
           std::ranges::equal(text.substr(0, key.size()), key, {}, Lowered);
}

} // namespace

ElementPlaces::ElementPlaces(std::vector<Utf16String> const& keys, Utf16View text)
    : m_keys(keys), m_elements(keys.size())
{
    for (auto const& key : keys)
    {
        m_firstUnits |= BitOf(key.front());
        m_secondUnits |= BitOf(key.size() > 1 ? key[1] : '>');
    }
    Find(text, 0);
}

void ElementPlaces::Follow(std::size_t key, Utf16View text, std::size_t end, std::size_t start,
                           std::size_t newStart) noexcept
{
    auto lost = false;
    auto const follow = [&](std::size_t& place) {
        if (place >= end)
        {
            lost |= place < start;
            place = place < start ? nowhere : place - start + newStart;
        }
    };
    for (++key; key < m_elements.size(); ++key)
    {
        // Unpaired elements are never looked up.
        auto& [open, close] = m_elements[key];
        if (open != nowhere && close != nowhere)
        {
            follow(open);
            follow(close);
        }
    }
    if (lost)
    {
        Find(text, newStart);
    }
}

// Known places stay.
void ElementPlaces::Find(Utf16View text, std::size_t from) noexcept
{
    FindUnit(text, '<', from, [&](std::size_t at) {
        auto name = text.substr(at + 1);
        auto const place = name.starts_with('/') ? &Element::close : &Element::open;
        name.remove_prefix(place == &Element::close ? 1 : 0);
        if (name.size() < 2 || (m_firstUnits & BitOf(name[0])) == 0 || (m_secondUnits & BitOf(name[1])) == 0)
        {
            return false;
        }
        auto const key = std::ranges::find_if(m_keys, [&](Utf16View wanted) { return BeginsWith(name, wanted); });
        if (key != m_keys.end())
        {
            auto& first = m_elements[static_cast<std::size_t>(key - m_keys.begin())].*place;
            first = std::min(first, at);
        }
        return false;
    });
}

} // namespace zant
