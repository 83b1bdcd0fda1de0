#pragma once
#include "simulator/protocol/SetEntry.h"

#include <string>

namespace sim
{

// The file of an app's local settings: a mark, then their entries (Encoding.h).
std::wstring SettingsFileIn(std::wstring const& dataFolder);

// None without a file. Throws Error.
SetEntries ReadSettings(std::wstring const& path);

// Replaces the file as a whole; makes its folder when that is missing. Throws Error.
void WriteSettings(std::wstring const& path, SetEntries const& settings);

} // namespace sim
