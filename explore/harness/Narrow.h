#pragma once
#include <algorithm>
#include <string>
#include <string_view>

namespace explore
{

// A text to be shown, with a question mark for each unit that is no printable ASCII character.
inline std::string Narrow(std::wstring_view text)
{
    std::string narrow(text.size(), '?');
    std::ranges::transform(text, narrow.begin(),
                           [](wchar_t unit) { return unit >= L' ' && unit <= L'~' ? static_cast<char>(unit) : '?'; });
    return narrow;
}

} // namespace explore
