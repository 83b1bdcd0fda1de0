#pragma once
#include <cstdint>
#include <string_view>

namespace zant
{

// How many characters of a line end a text has that ends in this character.
constexpr std::size_t PresentOfLineEnd(char low, char high) noexcept
{
    if (high != '\0')
    {
        return 0;
    }
    if (low == '\n')
    {
        return 2;
    }
    return low == '\r' ? 1 : 0;
}

// What a file of lines lacks at its end so that the next line begins on its own: the second half of a code unit of
// UTF-16 (a zero byte, as nearly all text here has it) and the rest of the line end, CR LF. A file that ends in LF
// lacks nothing. Told by the size in bytes and the last two of them. In UTF-8 a halved character stays so: decoders go
// on behind it by themselves.
constexpr std::string_view MissingEnd(std::uint64_t size, char lastButOne, char last, bool wide) noexcept
{
    using namespace std::string_view_literals;
    if (!wide)
    {
        return "\r\n"sv.substr(PresentOfLineEnd(last, '\0'));
    }
    auto const isHalf = size % 2 != 0;
    auto const present = isHalf ? PresentOfLineEnd(last, '\0') : PresentOfLineEnd(lastButOne, last);
    return "\0\r\0\n\0"sv.substr(2 * present + (isHalf ? 0 : 1));
}

} // namespace zant
