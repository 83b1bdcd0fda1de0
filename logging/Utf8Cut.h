#pragma once
#include <string_view>

namespace zant
{

// The length in bytes of the character that begins with this byte; 1 for a byte that begins none.
constexpr std::size_t LengthOfCharacter(unsigned char first) noexcept
{
    if (first < 0xC0)
    {
        return 1;
    }
    if (first < 0xE0)
    {
        return 2;
    }
    return first < 0xF0 ? 3 : 4;
}

// UTF-8 text that was cut at an arbitrary byte, without an incomplete character at its end. Other invalid bytes stay.
constexpr std::string_view WithoutHalvedCharacter(std::string_view text) noexcept
{
    constexpr std::size_t longestCharacter = 4;
    for (std::size_t tail = 1; tail <= text.size() && tail < longestCharacter; ++tail)
    {
        auto const byte = static_cast<unsigned char>(text[text.size() - tail]);
        if ((byte & 0xC0) == 0x80)
        {
            continue; // continuation byte: the first byte is further left
        }
        return LengthOfCharacter(byte) > tail ? text.substr(0, text.size() - tail) : text;
    }
    return text;
}

} // namespace zant
