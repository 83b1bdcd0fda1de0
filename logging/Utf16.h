#pragma once
#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

namespace zant
{

// A unit of UTF-16, for code that is also built elsewhere than on Windows, where wchar_t is twice as wide.
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

// "text"_utf16: the units of an ASCII text.
template <AsciiLiteral literal>
constexpr Utf16View operator""_utf16() noexcept
{
    return {static_cast<Utf16Unit const*>(literal.units), std::size(literal.units) - 1};
}

} // namespace zant
