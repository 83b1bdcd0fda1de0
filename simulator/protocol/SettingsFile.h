#pragma once
#include <string>
#include <string_view>

namespace sim
{

// The file of an app's local settings: one set of values (SetText.h), in UTF-16 with a byte-order mark.
std::wstring SettingsFileIn(std::wstring const& dataFolder);

// The set; empty without a file. Throws Error.
std::wstring ReadSettings(std::wstring const& path);

// Replaces the file as a whole; makes its folder when that is missing. Throws Error.
void WriteSettings(std::wstring const& path, std::wstring_view set);

} // namespace sim
