#pragma once
#include <string_view>

namespace zant
{

// UTF-8 text that was cut at some byte, without the character at its end that the cut has halved, if any. Other
// invalid bytes stay as they are.
constexpr std::string_view WithoutHalvedCharacter(std::string_view text) noexcept
{
    constexpr std::size_t longestCharacter = 4;
    for (std::size_t tail = 1; tail <= text.size() && tail < longestCharacter; ++tail)
    {
        auto const byte = static_cast<unsigned char>(text[text.size() - tail]);
        if ((byte & 0xC0) == 0x80)
        {
            continue; // inside a character: its first byte is further to the left
        }
        std::size_t const length = byte >= 0xF0 ? 4 : byte >= 0xE0 ? 3 : byte >= 0xC0 ? 2 : 1;
        return length > tail ? text.substr(0, text.size() - tail) : text;
    }
    return text;
}

} // namespace zant
