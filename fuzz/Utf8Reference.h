#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// UTF-8 and UTF-16 by the tables of the Unicode standard, one character at a time.
namespace fuzz
{

// The well-formed byte sequences, by the first byte and the range of the second; those behind are 80 to BF.
struct WellFormed
{
    unsigned firstFrom, firstTo;
    unsigned secondFrom, secondTo;
    std::size_t size;
    char32_t bitsOfFirst;
};

inline constexpr WellFormed wellFormed[] = {
    {0x00, 0x7F, 0, 0, 1, 0x7F},       {0xC2, 0xDF, 0x80, 0xBF, 2, 0x1F}, {0xE0, 0xE0, 0xA0, 0xBF, 3, 0x0F},
    {0xE1, 0xEC, 0x80, 0xBF, 3, 0x0F}, {0xED, 0xED, 0x80, 0x9F, 3, 0x0F}, {0xEE, 0xEF, 0x80, 0xBF, 3, 0x0F},
    {0xF0, 0xF0, 0x90, 0xBF, 4, 0x07}, {0xF1, 0xF3, 0x80, 0xBF, 4, 0x07}, {0xF4, 0xF4, 0x80, 0x8F, 4, 0x07},
};

struct Decoded
{
    char32_t character;
    std::size_t size;
};

// The character that the text begins with; nothing when it begins with none.
inline std::optional<Decoded> FirstCharacter(std::string_view text)
{
    auto const at = [&](std::size_t place) { return static_cast<unsigned char>(text[place]); };
    for (auto const& row : wellFormed)
    {
        if (text.size() < row.size || at(0) < row.firstFrom || at(0) > row.firstTo)
        {
            continue;
        }
        char32_t character = at(0) & row.bitsOfFirst;
        auto isWhole = true;
        for (std::size_t place = 1; place < row.size; ++place)
        {
            isWhole &=
                at(place) >= (place == 1 ? row.secondFrom : 0x80u) && at(place) <= (place == 1 ? row.secondTo : 0xBFu);
            character = character << 6 | (at(place) & 0x3Fu);
        }
        if (isWhole)
        {
            return Decoded{character, row.size};
        }
    }
    return std::nullopt;
}

inline void AppendUnits(std::wstring& units, char32_t character)
{
    if (character < 0x10000)
    {
        units += static_cast<wchar_t>(character);
        return;
    }
    units += static_cast<wchar_t>(0xD800 + (character - 0x10000) / 0x400);
    units += static_cast<wchar_t>(0xDC00 + (character - 0x10000) % 0x400);
}

// Nothing when a byte belongs to no character.
inline std::optional<std::wstring> ToUnits(std::string_view text)
{
    std::wstring units;
    while (!text.empty())
    {
        auto const next = FirstCharacter(text);
        if (!next)
        {
            return std::nullopt;
        }
        AppendUnits(units, next->character);
        text.remove_prefix(next->size);
    }
    return units;
}

inline std::string Bytes(char32_t character)
{
    auto const tail = [&](unsigned shift) { return static_cast<char>(0x80 | (character >> shift & 0x3F)); };
    auto const head = [&](unsigned mark, unsigned shift) { return static_cast<char>(mark | character >> shift); };
    if (character < 0x80)
    {
        return {head(0, 0)};
    }
    if (character < 0x800)
    {
        return {head(0xC0, 6), tail(0)};
    }
    if (character < 0x10000)
    {
        return {head(0xE0, 12), tail(6), tail(0)};
    }
    return {head(0xF0, 18), tail(12), tail(6), tail(0)};
}

// An unpaired surrogate becomes U+FFFD.
inline std::string FromUnits(std::wstring_view units)
{
    auto const isIn = [&](std::size_t place, char32_t first) {
        return place < units.size() && static_cast<char32_t>(units[place]) - first < 0x400;
    };
    std::string text;
    for (std::size_t place = 0; place < units.size(); ++place)
    {
        auto character = static_cast<char32_t>(units[place]);
        if (isIn(place, 0xD800) && isIn(place + 1, 0xDC00))
        {
            character = 0x10000 + (character - 0xD800) * 0x400 + static_cast<char32_t>(units[++place]) - 0xDC00;
        }
        else if (isIn(place, 0xD800) || isIn(place, 0xDC00))
        {
            character = 0xFFFD;
        }
        text += Bytes(character);
    }
    return text;
}

// Each byte that belongs to no character becomes U+FFFD.
inline std::string Repaired(std::string_view text)
{
    std::string repaired;
    while (!text.empty())
    {
        auto const next = FirstCharacter(text);
        auto const size = next ? next->size : 1;
        repaired += next ? text.substr(0, size) : std::string_view("\xEF\xBF\xBD");
        text.remove_prefix(size);
    }
    return repaired;
}

} // namespace fuzz
