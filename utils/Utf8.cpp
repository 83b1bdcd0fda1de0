#include "utils/Utf8.h"

#include <limits>
#include <new>
#include <windows.h>

namespace zant
{

namespace
{

// The system's conversions work alike in both directions: called for the size, then with a buffer of that size, with
// the length as an int each time. No string of this app comes near that limit; a longer one fails.
template <typename To, typename From, typename Convert>
std::optional<To> Converted(From text, Convert convert) noexcept
try
{
    if (text.empty())
    {
        return To(); // for the system a length of zero is an error
    }
    if (text.size() > static_cast<std::size_t>(std::numeric_limits<int>::max()))
    {
        return std::nullopt;
    }
    auto const length = static_cast<int>(text.size());
    auto const needed = convert(text.data(), length, nullptr, 0);
    if (needed <= 0)
    {
        return std::nullopt;
    }
    To result(static_cast<std::size_t>(needed), typename To::value_type());
    if (convert(text.data(), length, result.data(), needed) != needed)
    {
        return std::nullopt;
    }
    return result;
}
catch (std::bad_alloc const&)
{
    return std::nullopt;
}

} // namespace

std::optional<std::wstring> ToWide(std::string_view text) noexcept
{
    return Converted<std::wstring>(text, [](char const* from, int length, wchar_t* to, int size) {
        return MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, from, length, to, size);
    });
}

std::optional<std::string> ToUtf8(std::wstring_view text) noexcept
{
    return Converted<std::string>(text, [](wchar_t const* from, int length, char* to, int size) {
        return WideCharToMultiByte(CP_UTF8, 0, from, length, to, size, nullptr, nullptr);
    });
}

wchar_t const* AsWide(wchar_t const* text, std::wstring& /*converted*/) noexcept
{
    return text != nullptr ? text : L"";
}

wchar_t const* AsWide(char const* text, std::wstring& converted) noexcept
{
    auto wide = ToWide(text != nullptr ? text : "");
    if (!wide)
    {
        return nullptr;
    }
    converted = std::move(*wide);
    return converted.c_str();
}

} // namespace zant
