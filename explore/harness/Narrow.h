#pragma once
#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>

namespace explore::faults
{

// Of a text in ASCII, as the names of calls and the lines of the log are.
inline std::string Narrow(std::wstring_view text)
{
    std::string narrow;
    std::ranges::transform(text, std::back_inserter(narrow), [](wchar_t unit) { return static_cast<char>(unit); });
    return narrow;
}

} // namespace explore::faults
