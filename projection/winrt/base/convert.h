// Text to and from UTF-8, and numbers as text.
#pragma once
#include "winrt/base/error.h"

namespace winrt
{

// Throws when the text is no valid UTF-8.
inline hstring to_hstring(std::string_view text)
{
    if (text.empty())
    {
        return {};
    }
    auto const size = static_cast<int>(text.size());
    auto const wideSize =
        impl::os::MultiByteToWideChar(impl::os::utf8, impl::os::invalid_characters_fail, text.data(), size, nullptr, 0);
    check_bool(wideSize);
    std::wstring wide(static_cast<size_t>(wideSize), L'\0');
    check_bool(impl::os::MultiByteToWideChar(impl::os::utf8, impl::os::invalid_characters_fail, text.data(), size,
                                             wide.data(), wideSize));
    return hstring(wide);
}

inline hstring to_hstring(char const* text)
{
    return to_hstring(std::string_view(text));
}

inline hstring to_hstring(hstring const& text)
{
    return text;
}

inline hstring to_hstring(bool value)
{
    return value ? L"true" : L"false";
}

template <std::integral T>
    requires(!std::is_same_v<T, bool> && sizeof(T) > 2)
hstring to_hstring(T value)
{
    wchar_t digits[24];
    auto* first = digits + 24;
    auto rest = static_cast<uint64_t>(value);
    auto const negative = value < T{};
    rest = negative ? uint64_t{} - rest : rest;
    do
    {
        *--first = static_cast<wchar_t>(L'0' + rest % 10);
        rest /= 10;
    } while (rest != 0);
    if (negative)
    {
        *--first = L'-';
    }
    return {first, static_cast<uint32_t>(digits + 24 - first)};
}

// With braces, in small letters.
inline hstring to_hstring(guid const& value)
{
    auto const text = impl::guid_text(value);
    std::string_view const characters = text;
    return hstring(std::wstring(characters.begin(), characters.end()));
}

inline std::string to_string(std::wstring_view text)
{
    if (text.empty())
    {
        return {};
    }
    auto const size = static_cast<int>(text.size());
    auto const narrowSize =
        impl::os::WideCharToMultiByte(impl::os::utf8, 0, text.data(), size, nullptr, 0, nullptr, nullptr);
    check_bool(narrowSize);
    std::string narrow(static_cast<size_t>(narrowSize), '\0');
    check_bool(impl::os::WideCharToMultiByte(impl::os::utf8, 0, text.data(), size, narrow.data(), narrowSize, nullptr,
                                             nullptr));
    return narrow;
}

} // namespace winrt
