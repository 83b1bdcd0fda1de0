#include "simulator/base/Text.h"

#include <windows.h>

namespace sim
{

std::string ToUtf8(std::wstring_view text)
{
    std::string utf8;
    auto const convert = [&] {
        return WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), utf8.data(),
                                   static_cast<int>(utf8.size()), nullptr, nullptr);
    };
    utf8.resize(static_cast<std::size_t>(convert())); // into no room, it tells how much it needs
    convert();
    return utf8;
}

std::wstring FromUtf8(std::string_view text)
{
    std::wstring wide;
    auto const convert = [&] {
        return MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), wide.data(),
                                   static_cast<int>(wide.size()));
    };
    wide.resize(static_cast<std::size_t>(convert()));
    convert();
    return wide;
}

std::wstring Hex(std::uint32_t value)
{
    std::wstring text = L"0x";
    for (int shift = 28; shift >= 0; shift -= 4)
    {
        text += L"0123456789ABCDEF"[(value >> shift) & 0xF];
    }
    return text;
}

namespace
{

std::optional<std::uint32_t> DigitOf(wchar_t character, std::uint32_t base)
{
    constexpr std::wstring_view digits = L"0123456789abcdef";
    auto const lower = character >= L'A' && character <= L'F' ? character - L'A' + L'a' : character;
    auto const digit = digits.find(static_cast<wchar_t>(lower));
    if (digit == std::wstring_view::npos || digit >= base)
    {
        return std::nullopt;
    }
    return static_cast<std::uint32_t>(digit);
}

} // namespace

std::optional<std::uint64_t> ParseNumberUpTo(std::uint64_t largest, std::wstring_view text)
{
    auto const hexadecimal = StartsWith(text, L"0x") || StartsWith(text, L"0X");
    std::uint32_t const base = hexadecimal ? 16 : 10;
    auto const digits = text.substr(hexadecimal ? 2 : 0);
    std::uint64_t value = 0;
    for (auto const character : digits)
    {
        auto const digit = DigitOf(character, base);
        if (!digit || *digit > largest || value > (largest - *digit) / base)
        {
            return std::nullopt;
        }
        value = value * base + *digit;
    }
    return digits.empty() ? std::nullopt : std::optional(value);
}

std::optional<std::uint32_t> ParseNumber(std::wstring_view text)
{
    auto const number = ParseNumberUpTo(UINT32_MAX, text);
    return number ? std::optional(static_cast<std::uint32_t>(*number)) : std::nullopt;
}

std::optional<std::wstring_view> TakeLine(std::wstring_view& text)
{
    constexpr std::wstring_view lineEnd = L"\r\n";
    auto const length = text.find(lineEnd);
    if (length == std::wstring_view::npos)
    {
        return std::nullopt;
    }
    auto const line = text.substr(0, length);
    text.remove_prefix(length + lineEnd.size());
    return line;
}

bool StartsWith(std::wstring_view text, std::wstring_view start)
{
    return text.substr(0, start.size()) == start;
}

bool EqualIgnoringCase(std::wstring_view left, std::wstring_view right)
{
    return CompareStringOrdinal(left.data(), static_cast<int>(left.size()), right.data(),
                                static_cast<int>(right.size()), TRUE) == CSTR_EQUAL;
}

} // namespace sim
