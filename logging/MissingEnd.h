#pragma once
#include <cstdint>
#include <string_view>

namespace zant
{

// The number of characters of a line end that a string ending in this character already has.
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

// The bytes that a file lacks at its end for the next line to begin on its own: the second byte of a UTF-16 code unit
// (zero, as in nearly all text here) and the rest of the line end, CR LF. A file that ends in LF lacks nothing.
// Determined by the size in bytes and the last two bytes. In UTF-8 a split character stays: decoders resume after it.
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
