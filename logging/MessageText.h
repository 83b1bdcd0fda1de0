#pragma once
#include <cstdarg>
#include <string>

namespace zant
{

// Replaces the content of `message` by the text that a format (not null) and its arguments make: at most 4,094
// characters (bytes of UTF-8 in a narrow one), what is longer is cut. Without arguments (null) the format is the
// message, of any length. What the runtime cannot format at all becomes an empty message.
void FormatInto(std::wstring& message, wchar_t const* format, va_list arguments);

// False when the text is not valid UTF-8; a character that the cut has halved is left out and does not count.
bool FormatInto(std::wstring& message, char const* format, va_list arguments);

} // namespace zant
