#pragma once
#include "doctor/log/LineReader.h"
#include "doctor/log/LogLine.h"

#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>

namespace doctor
{

class InputFile;

// A line with its fields. All texts are valid while it is given.
struct Entry
{
    RawLine raw{};
    std::optional<LogLine> line{}; // nothing: the text is in no format of this app
};

// False ends the reading.
using TakeEntry = std::function<bool(Entry const&)>;

// Gives a line as one entry; as several where a killed process left no line end between two.
bool TakeSplit(RawLine const& raw, TakeEntry const& take);

// Reads a log file from its first line to its last. False when `take` ended it. Throws ReadError.
bool ReadLog(InputFile& file, TakeEntry const& take);
bool ReadLog(std::filesystem::path const& path, TakeEntry const& take);

} // namespace doctor
