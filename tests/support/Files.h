#pragma once
#include <string>
#include <string_view>
#include <vector>

namespace test
{

// The bytes of a file. Fails the test, and returns nothing, when the file cannot be read.
std::string ReadBytes(std::wstring const& path);

void WriteBytes(std::wstring const& path, std::string_view bytes);

bool FileExists(std::wstring const& path);

// The names of all files and folders in a folder, in ascending order.
std::vector<std::wstring> NamesIn(std::wstring const& folder);

// The bytes of a string as UTF-16, little-endian.
std::string Utf16(std::wstring_view text);

// The lines of a log in UTF-16, without line ends (CR LF) and byte-order mark. Text after the last line end counts as a
// line.
std::vector<std::wstring> ReadLines(std::wstring const& path);

// The parts of a string between separators.
std::vector<std::wstring> Split(std::wstring_view text, std::wstring_view separator);

} // namespace test
