#pragma once
#include <string_view>

namespace sim
{

// Writes a line in UTF-8 to standard output or standard error, unbuffered.
void WriteLine(std::wstring_view text);
void WriteErrorLine(std::wstring_view text);

} // namespace sim
