#pragma once
#include "doctor/verdict/Report.h"

#include <filesystem>
#include <optional>
#include <vector>

namespace doctor
{

// The report of the logs at the paths, as FindLogs finds them. `asOf` is the local time until which nothing more was
// written; nothing: nothing more will ever be. Throws Error as FindLogs does; a log that cannot be read is a remark.
Report ReportOfLogs(std::vector<std::filesystem::path> const& paths, std::optional<LogTime> asOf);

// Adds a remark for each sentence about what was not read.
void NoteUnread(Report& report, std::vector<std::string> const& unread);

} // namespace doctor
