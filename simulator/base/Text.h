#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace sim
{

// What is no valid text in one encoding becomes U+FFFD in the other.
std::string ToUtf8(std::wstring_view text);
std::wstring FromUtf8(std::string_view text);

// The text with blanks behind it, to that width.
std::wstring LeftAligned(std::wstring_view text, std::size_t width);

// The number with blanks or zeros before it, to that width.
std::wstring RightAligned(std::int64_t number, std::size_t width, wchar_t fill = L' ');

// A result code as people write it: 0x80070005.
std::wstring Hex(std::uint32_t value);

// A whole number in decimal, or in hexadecimal with 0x before it; nullopt for anything else or beyond 32 bits.
std::optional<std::uint32_t> ParseNumber(std::wstring_view text);

// The same with another limit.
std::optional<std::uint64_t> ParseNumberUpTo(std::uint64_t largest, std::wstring_view text);

// Takes the first line off the text and gives it without its CR LF; nullopt when the text holds no whole line.
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

// Wherever the part stands in the text; an empty one stands nowhere.
void ReplaceAll(std::wstring& text, std::wstring_view part, std::wstring_view other);

bool EqualIgnoringCase(std::wstring_view left, std::wstring_view right);

} // namespace sim
