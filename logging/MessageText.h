#pragma once
#include <cstdarg>
#include <optional>
#include <string>
#include <string_view>

namespace zant
{

// The message that a format (not null) and its arguments make: at most 4,094 characters (bytes of UTF-8 in a narrow
// format), what is longer is cut. Without arguments (null) the format is the message, of any length. Formats are
// literals of the program: for a bad one, such as one with %n, the C runtime of Windows ends the process.
//
// The view shows the format itself or `storage`, whatever that held; a storage that is used again keeps its memory.
// Nothing when a narrow text is not valid UTF-8; a character that the cut has halved is left out and does not count.
// Throws std::bad_alloc only.
std::optional<std::wstring_view> MessageText(wchar_t const* format, va_list arguments, std::wstring& storage);
std::optional<std::wstring_view> MessageText(char const* format, va_list arguments, std::wstring& storage);

} // namespace zant
