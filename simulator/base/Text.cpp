#include "simulator/base/Text.h"

#include <charconv>
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

std::wstring LeftAligned(std::wstring_view text, std::size_t width)
{
    return std::wstring(text) + std::wstring(width > text.size() ? width - text.size() : 0, L' ');
}

std::wstring RightAligned(std::int64_t number, std::size_t width, wchar_t fill)
{
    auto const digits = std::to_wstring(number);
    return std::wstring(width > digits.size() ? width - digits.size() : 0, fill) + digits;
}

std::wstring HexDigits(std::uint32_t value, int count)
{
    std::wstring digits;
    while (count-- > 0)
    {
        digits += L"0123456789ABCDEF"[(value >> 4 * count) & 0xF];
    }
    return digits;
}

std::wstring Hex(std::uint32_t value)
{
    return L"0x" + HexDigits(value, 8);
}

std::optional<std::uint64_t> ParseNumberUpTo(std::uint64_t largest, std::wstring_view text)
{
    auto const hexadecimal = text.starts_with(L"0x") || text.starts_with(L"0X");
    auto const digits = ToUtf8(text.substr(hexadecimal ? 2 : 0));
    auto const* const end = digits.data() + digits.size();
    std::uint64_t value = 0;
    auto const [stop, error] = std::from_chars(digits.data(), end, value, hexadecimal ? 16 : 10);
    return error == std::errc() && stop == end && value <= largest ? std::optional(value) : std::nullopt;
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

std::optional<std::wstring> TakeUtf8Line(std::string_view& text)
{
    auto const length = text.find('\n');
    if (length == std::string_view::npos)
    {
        return std::nullopt;
    }
    auto const line = text.substr(0, length);
    text.remove_prefix(length + 1);
    return FromUtf8(line.substr(0, line.size() - (line.ends_with('\r') ? 1 : 0)));
}

void ReplaceAll(std::wstring& text, std::wstring_view part, std::wstring_view other)
{
    for (std::size_t at = 0; !part.empty() && (at = text.find(part, at)) != std::wstring::npos; at += other.size())
    {
        text.replace(at, part.size(), other);
    }
}

bool EqualIgnoringCase(std::wstring_view left, std::wstring_view right)
{
    return CompareStringOrdinal(left.data(), static_cast<int>(left.size()), right.data(),
                                static_cast<int>(right.size()), TRUE) == CSTR_EQUAL;
}

} // namespace sim
