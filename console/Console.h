#pragma once
#include <string_view>

namespace console
{

// Writes a line to standard output, or to standard error, at once: UTF-8 to a file or a pipe, text to a console. Any
// thread; lines of several threads do not mix. False when the stream does not take it: GetLastError tells why.
bool WriteLine(std::string_view text) noexcept;
bool WriteErrorLine(std::string_view text) noexcept;

// The same of a text in UTF-16.
bool WriteLine(std::wstring_view text) noexcept;
bool WriteErrorLine(std::wstring_view text) noexcept;

} // namespace console
