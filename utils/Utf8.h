#pragma once
#include <optional>
#include <string>
#include <string_view>

namespace zant
{

// UTF-8 to UTF-16. Nothing when the bytes are not valid UTF-8 or memory is short. Throws nothing.
std::optional<std::wstring> ToWide(std::string_view text) noexcept;

// UTF-16 to UTF-8; an unpaired surrogate becomes U+FFFD. Nothing when memory is short. Throws nothing.
std::optional<std::string> ToUtf8(std::wstring_view text) noexcept;

// A zero-terminated string of either width as a wide one; null counts as empty. `converted` receives a converted narrow
// string. Null when that is not valid UTF-8 or memory is short.
wchar_t const* AsWide(wchar_t const* text, std::wstring& converted) noexcept;
wchar_t const* AsWide(char const* text, std::wstring& converted) noexcept;

} // namespace zant
