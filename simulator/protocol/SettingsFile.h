#pragma once
#include "simulator/protocol/SetEntry.h"

#include <string>

namespace sim
{

// The file of an app's local settings: a signature, then the encoded entries (Encoding.h).
std::wstring SettingsFileIn(std::wstring const& dataFolder);

// Empty when there is no file. Throws Error.
SetEntries ReadSettings(std::wstring const& path);

// Replaces the whole file; creates its folder if necessary. Throws Error.
void WriteSettings(std::wstring const& path, SetEntries const& settings);

} // namespace sim
