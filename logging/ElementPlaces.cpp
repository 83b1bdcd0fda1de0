#include "logging/ElementPlaces.h"

#include "logging/UnitScan.h"

#include <cstring>

namespace zant
{

namespace
{

// Names are compared four code units at a time.
constexpr std::size_t unitsAtOnce = 4;
constexpr std::uint64_t ofEachUnit = 0x0001'0001'0001'0001;

std::uint64_t FourUnits(Utf16Unit const* units) noexcept
{
    std::uint64_t four = 0;
    std::memcpy(&four, units, sizeof four);
    return four;
}

// Four units of a text match four of a key when they differ in nothing but the case of letters. The bit 0x20 tells the
// cases apart; in a key, letters alone have the bit 0x40.
bool Match(Utf16Unit const* text, Utf16Unit const* key) noexcept
{
    auto const four = FourUnits(key);
    return ((FourUnits(text) ^ four) & ~((four & 0x40 * ofEachUnit) >> 1)) == 0;
}

// Whether a string begins with a key and the end of a tag.
bool BeginsWith(Utf16View text, Utf16View key) noexcept
{
    if (text.size() <= key.size() || text[key.size()] != '>')
    {
        return false;
    }
    auto const last = key.size() - unitsAtOnce;
    for (std::size_t at = 0; at < last; at += unitsAtOnce)
    {
        if (!Match(&text[at], &key[at]))
        {
            return false;
        }
    }
    return Match(&text[last], &key[last]);
}

// What the first four units of several keys have in common, apart from their case: it rules out most other names by one
// comparison.
class CommonStart
{
  public:
    explicit CommonStart(std::span<Utf16String const> keys) noexcept : m_units(FourUnits(keys.front().data()))
    {
        std::uint64_t different = 0x20 * ofEachUnit;
        for (auto const& key : keys)
        {
            different |= FourUnits(key.data()) ^ m_units;
        }
        m_common = ~different;
        m_units &= m_common;
    }

    bool MayBegin(Utf16Unit const* name) const noexcept { return (FourUnits(name) & m_common) == m_units; }

  private:
    std::uint64_t m_units;
    std::uint64_t m_common = 0;
};

} // namespace

ElementPlaces::ElementPlaces(std::span<Utf16String const> keys, Utf16View text) noexcept : m_keys(keys), m_text(text)
{
    constexpr std::size_t unitsBehindTag = 5; // at least: four of a key and '>'
    if (keys.empty() || text.size() <= unitsBehindTag)
    {
        return;
    }
    CommonStart const start(keys);
    FindUnit(text.substr(0, text.size() - unitsBehindTag), '<', 0, [&, units = text.data()](std::size_t at) {
        auto const name = at + (units[at + 1] == '/' ? 2u : 1u);
        if (start.MayBegin(units + name))
        {
            Note(at, name);
        }
        return false;
    });
}

void ElementPlaces::Note(std::size_t at, std::size_t name) noexcept
{
    auto const rest = m_text.substr(name);
    auto const key = std::ranges::find_if(m_keys, [&](Utf16View wanted) { return BeginsWith(rest, wanted); });
    if (key == m_keys.end())
    {
        return;
    }
    auto& content = ContentOf(static_cast<std::size_t>(key - m_keys.begin()));
    if (m_text[at + 1] == '/')
    {
        content.end = std::min(content.end, at);
    }
    else
    {
        content.begin = std::min(content.begin, name + key->size() + 1);
    }
}

ElementContent& ElementPlaces::ContentOf(std::size_t key) noexcept
{
    auto& place = m_places[key];
    if (place == 0)
    {
        place = static_cast<std::uint8_t>(++m_count);
    }
    return m_contents[place - 1u];
}

} // namespace zant
