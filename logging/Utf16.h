#pragma once
#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

namespace zant
{

// A UTF-16 code unit, for code that is also built where wchar_t has 32 bits.
#ifdef _WIN32
using Utf16Unit = wchar_t;
#else
using Utf16Unit = char16_t;
#endif
using Utf16View = std::basic_string_view<Utf16Unit>;
using Utf16String = std::basic_string<Utf16Unit>;

template <std::size_t size>
struct AsciiLiteral
{
    // NOLINTNEXTLINE(google-explicit-constructor,hicpp-explicit-conversions): made from what stands before the suffix
    consteval AsciiLiteral(char const (&ascii)[size]) noexcept
    {
        std::ranges::transform(ascii, units, [](char character) { return static_cast<Utf16Unit>(character); });
    }

    Utf16Unit units[size] = {};
};

// "text"_utf16: an ASCII literal as UTF-16.
template <AsciiLiteral literal>
constexpr Utf16View operator""_utf16() noexcept
{
    return {static_cast<Utf16Unit const*>(literal.units), std::size(literal.units) - 1};
}

} // namespace zant
