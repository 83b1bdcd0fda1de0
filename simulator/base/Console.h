#pragma once
#include <string_view>

namespace sim
{

// Lines of UTF-8 to the terminal, file or pipe behind the standard handles, at once.
void WriteLine(std::wstring_view text);
void WriteErrorLine(std::wstring_view text);

} // namespace sim
