#pragma once
#include <cstdint>
#include <string_view>

namespace zant
{

// What a file of lines lacks at its end so that the next line begins on its own: the second half of a code unit of
// UTF-16 (a zero byte, as nearly all text here has it) and the rest of the line end, CR LF. A file that ends in LF
// lacks nothing. Told by the size in bytes and the last two of them. In UTF-8 a halved character stays so: decoders go
// on behind it by themselves.
constexpr std::string_view MissingEnd(std::uint64_t size, char lastButOne, char last, bool wide) noexcept
{
    using namespace std::string_view_literals;
    auto const isHalf = wide && size % 2 != 0;
    auto const low = wide && !isHalf ? lastButOne : last;
    auto const high = wide && !isHalf ? last : '\0';
    std::size_t const present = high != '\0' ? 0 : low == '\n' ? 2 : low == '\r' ? 1 : 0; // characters of the line end
    return wide ? "\0\r\0\n\0"sv.substr(2 * present + (isHalf ? 0 : 1)) : "\r\n"sv.substr(present);
}

} // namespace zant
