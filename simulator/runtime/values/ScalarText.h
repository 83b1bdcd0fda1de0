#pragma once
#include "simulator/runtime/Namespaces.h"

#include <cstring>
#include <string>
#include <string_view>
#include <type_traits>
#include <winrt/Windows.Foundation.h>

namespace sim
{

std::wstring BytesText(void const* bytes, std::size_t size);

// Throws hresult_error E_INVALIDARG when the text is not that many bytes.
void BytesFrom(std::wstring_view text, void* bytes, std::size_t size);

// E_INVALIDARG likewise. Numbers below zero as well as those above the largest of 63 bits.
std::uint64_t IntegerFrom(std::wstring_view text);

// A value as text that says it exactly: texts as they are, whole numbers in decimal, all else byte by byte.
template <typename T>
std::wstring ScalarText(T const& value)
{
    if constexpr (std::is_same_v<T, winrt::hstring>)
    {
        return std::wstring(value);
    }
    else if constexpr (std::is_integral_v<T>)
    {
        return std::to_wstring(value);
    }
    else
    {
        return BytesText(&value, sizeof value);
    }
}

template <typename T>
T ScalarFrom(std::wstring_view text)
{
    if constexpr (std::is_same_v<T, winrt::hstring>)
    {
        return winrt::hstring(text);
    }
    else if constexpr (std::is_integral_v<T>)
    {
        return static_cast<T>(IntegerFrom(text));
    }
    else
    {
        T value{};
        BytesFrom(text, &value, sizeof value);
        return value;
    }
}

} // namespace sim
