#pragma once
#include <cstdarg>
#include <optional>
#include <string>
#include <string_view>

namespace zant
{

// Formats a message. format: not null; a literal of the program, since the C runtime of Windows ends the process for an
// invalid one, such as one with %n. Output beyond 4,094 characters (bytes of UTF-8 for a narrow format) is cut. Null
// arguments: the format is the message, of any length.
//
// The view points into the format or into `storage`, whose content is replaced; a reused storage keeps its memory.
// Nothing when narrow output is not valid UTF-8; a character split by the cut is left out and does not count as
// invalid. Throws std::bad_alloc only.
std::optional<std::wstring_view> MessageText(wchar_t const* format, va_list arguments, std::wstring& storage);
std::optional<std::wstring_view> MessageText(char const* format, va_list arguments, std::wstring& storage);

} // namespace zant
