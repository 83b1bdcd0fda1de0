#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace sim
{

// What is invalid in one encoding becomes U+FFFD in the other.
std::string ToUtf8(std::wstring_view text);
std::wstring FromUtf8(std::string_view text);

// Padded with blanks on the right to that width.
std::wstring LeftAligned(std::wstring_view text, std::size_t width);

// Padded on the left to that width.
std::wstring RightAligned(std::int64_t number, std::size_t width, wchar_t fill = L' ');

// The lowest digits of a number in hexadecimal: that many.
std::wstring HexDigits(std::uint32_t value, int count);

// An HRESULT as people write it: 0x80070005.
std::wstring Hex(std::uint32_t value);

// An integer in decimal, or in hexadecimal after 0x; nullopt for anything else or beyond 32 bits.
std::optional<std::uint32_t> ParseNumber(std::wstring_view text);

// The same with another limit.
std::optional<std::uint64_t> ParseNumberUpTo(std::uint64_t largest, std::wstring_view text);

// Removes the first line from the text and returns it without its CR LF; nullopt when no line is complete.
std::optional<std::wstring_view> TakeLine(std::wstring_view& text);

// The same for a text in UTF-8 whose lines end with LF or CR LF.
std::optional<std::wstring> TakeUtf8Line(std::string_view& text);

// The texts one after the other, with the separator between them.
template <typename Texts>
std::wstring Listed(Texts const& texts, std::wstring_view separator)
{
    std::wstring list;
    for (auto const& text : texts)
    {
        list.append(text).append(separator);
    }
    return list.substr(0, list.size() - (list.empty() ? 0 : separator.size()));
}

// Replaces each occurrence of the part; an empty one has none.
void ReplaceAll(std::wstring& text, std::wstring_view part, std::wstring_view other);

bool EqualIgnoringCase(std::wstring_view left, std::wstring_view right);

} // namespace sim
