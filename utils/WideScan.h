#pragma once
#include <string_view>

namespace zant
{

// The first character of a zero-terminated string that equals `wanted`, else the terminator. Reads eight characters at
// a time: these scans are much of the computation of a log line, and under Wine the C runtime's functions read one
// character at a time.
wchar_t const* FindOrEnd(wchar_t const* text, wchar_t wanted) noexcept;

// A zero-terminated string as a view; null counts as empty.
inline std::wstring_view ViewOf(wchar_t const* text) noexcept
{
    if (text == nullptr)
    {
        return L"";
    }
    return {text, static_cast<std::size_t>(FindOrEnd(text, L'\0') - text)};
}

} // namespace zant
