#pragma once
#include <string_view>

namespace helper
{

// One line, as UTF-8, at once. Any thread; lines of several threads do not mix.
void WriteLine(std::wstring_view text) noexcept;
void WriteErrorLine(std::wstring_view text) noexcept;

} // namespace helper
