#pragma once
#include "doctor/verdict/Report.h"

#include <filesystem>
#include <optional>
#include <vector>

namespace doctor
{

// The report of the logs at the paths, as LogFilesAt finds them. `asOf` is the local time until which nothing more was
// written; nothing: nothing more will ever be. Throws Error when a log cannot be read.
Report ReportOfLogs(std::vector<std::filesystem::path> const& paths, std::optional<LogTime> asOf);

} // namespace doctor
