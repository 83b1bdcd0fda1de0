#pragma once
#include <string_view>

namespace zant
{

// The first place of zero-terminated text that holds `wanted`, else its terminator. Eight characters at a time: these
// scans are much of what a log line computes, and the C runtime's go character by character under Wine.
wchar_t const* FindOrEnd(wchar_t const* text, wchar_t wanted) noexcept;

// The whole of zero-terminated text; null stands for an empty one.
inline std::wstring_view ViewOf(wchar_t const* text) noexcept
{
    if (text == nullptr)
    {
        return L"";
    }
    return {text, static_cast<std::size_t>(FindOrEnd(text, L'\0') - text)};
}

} // namespace zant
