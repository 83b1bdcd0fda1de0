#include "simulator/runtime/values/ScalarText.h"

#include "simulator/base/Text.h"

#include <charconv>

namespace sim
{

namespace
{

constexpr std::wstring_view digits = L"0123456789ABCDEF";

unsigned DigitFrom(wchar_t character)
{
    auto const digit = digits.find(character);
    return digit != std::wstring_view::npos ? static_cast<unsigned>(digit) : throw winrt::hresult_invalid_argument();
}

template <typename T>
bool TryParse(std::string const& text, T& value)
{
    auto const* const end = text.data() + text.size();
    auto const result = std::from_chars(text.data(), end, value);
    return result.ec == std::errc() && result.ptr == end;
}

} // namespace

std::wstring BytesText(void const* bytes, std::size_t size)
{
    std::wstring text;
    for (std::size_t i = 0; i < size; ++i)
    {
        auto const byte = static_cast<unsigned char const*>(bytes)[i];
        text += digits[byte >> 4];
        text += digits[byte & 0xF];
    }
    return text;
}

void BytesFrom(std::wstring_view text, void* bytes, std::size_t size)
{
    if (text.size() != size * 2)
    {
        throw winrt::hresult_invalid_argument();
    }
    for (std::size_t i = 0; i < size; ++i)
    {
        auto const byte = DigitFrom(text[i * 2]) << 4 | DigitFrom(text[i * 2 + 1]);
        static_cast<unsigned char*>(bytes)[i] = static_cast<unsigned char>(byte);
    }
}

std::uint64_t IntegerFrom(std::wstring_view text)
{
    auto const narrow = ToUtf8(text);
    std::int64_t below = 0;
    std::uint64_t above = 0;
    if (TryParse(narrow, below))
    {
        return static_cast<std::uint64_t>(below);
    }
    return TryParse(narrow, above) ? above : throw winrt::hresult_invalid_argument();
}

} // namespace sim
