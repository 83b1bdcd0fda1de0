#pragma once
#include <string_view>

namespace doctor
{

// Writes a line in UTF-8 to standard output, or to standard error. Throws Error when standard output takes no more.
void WriteLine(std::string_view text);
void WriteErrorLine(std::string_view text);

} // namespace doctor
