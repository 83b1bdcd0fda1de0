#include "doctor/log/Utf8.h"

#include <algorithm>
#include <cstdint>

namespace doctor
{

namespace
{

char TrailingByte(char32_t character, int shift)
{
    return static_cast<char>(0x80 | ((character >> shift) & 0x3F));
}

// The length of the well-formed character at that place, 0 when there is none (Unicode, table "Well-Formed UTF-8 Byte
// Sequences").
std::size_t WellFormedLength(std::string_view text, std::size_t at)
{
    auto const byte = [&](std::size_t offset) {
        return at + offset < text.size() ? static_cast<std::uint8_t>(text[at + offset]) : std::uint8_t{0};
    };
    auto const isTrailing = [&](std::size_t offset) { return (byte(offset) & 0xC0) == 0x80; };
    auto const first = byte(0);
    auto const second = byte(1);
    if (first < 0x80)
    {
        return 1;
    }
    if (first >= 0xC2 && first <= 0xDF)
    {
        return isTrailing(1) ? 2 : 0;
    }
    if ((first & 0xF0) == 0xE0)
    {
        auto const isOverlong = first == 0xE0 && second < 0xA0;
        auto const isSurrogate = first == 0xED && second >= 0xA0;
        return isTrailing(1) && isTrailing(2) && !isOverlong && !isSurrogate ? 3 : 0;
    }
    if (first >= 0xF0 && first <= 0xF4)
    {
        auto const isOverlong = first == 0xF0 && second < 0x90;
        auto const isBeyond = first == 0xF4 && second >= 0x90;
        return isTrailing(1) && isTrailing(2) && isTrailing(3) && !isOverlong && !isBeyond ? 4 : 0;
    }
    return 0;
}

} // namespace

void AppendUtf8(std::string& text, char32_t character)
{
    if (character < 0x80)
    {
        text += static_cast<char>(character);
    }
    else if (character < 0x800)
    {
        text += static_cast<char>(0xC0 | (character >> 6));
        text += TrailingByte(character, 0);
    }
    else if (character < 0x10000)
    {
        text += static_cast<char>(0xE0 | (character >> 12));
        text += TrailingByte(character, 6);
        text += TrailingByte(character, 0);
    }
    else
    {
        text += static_cast<char>(0xF0 | (character >> 18));
        text += TrailingByte(character, 12);
        text += TrailingByte(character, 6);
        text += TrailingByte(character, 0);
    }
}

bool ReplaceMalformed(std::string& text)
{
    if (std::ranges::none_of(text, [](char each) { return each < 0; }))
    {
        return false;
    }
    std::string result;
    auto isMalformed = false;
    for (std::size_t at = 0; at < text.size();)
    {
        auto const length = WellFormedLength(text, at);
        if (length == 0)
        {
            AppendUtf8(result, replacementCharacter);
            isMalformed = true;
            ++at;
            continue;
        }
        result.append(text, at, length);
        at += length;
    }
    if (isMalformed)
    {
        text = std::move(result);
    }
    return isMalformed;
}

std::string WithoutControls(std::string_view text)
{
    std::string result;
    for (std::size_t at = 0; at < text.size(); ++at)
    {
        auto const byte = static_cast<std::uint8_t>(text[at]);
        // U+0080 to U+009F are two bytes; a terminal may take U+009B for the begin of a sequence.
        auto const isLong = byte == 0xC2 && at + 1 < text.size() && static_cast<std::uint8_t>(text[at + 1]) < 0xA0;
        auto const isControl = isLong || (byte < ' ' && byte != '\t') || byte == 0x7F;
        isControl ? AppendUtf8(result, replacementCharacter) : result.push_back(text[at]);
        at += isLong ? 1 : 0;
    }
    return result;
}

} // namespace doctor
