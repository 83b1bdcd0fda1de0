#pragma once
#include "doctor/timeline/Timeline.h"
#include "doctor/verdict/Report.h"

#include <filesystem>
#include <optional>
#include <vector>

namespace doctor
{

struct ReportAndTimeline
{
    Report report;
    Timeline timeline;
};

// What ReportOfLogs makes of the logs, and their timeline. `title` is the timeline's. Throws Error as that does.
ReportAndTimeline TimelineOfLogs(std::vector<std::filesystem::path> const& paths, std::optional<LogTime> asOf,
                                 std::string const& title, bool hasFullUris);

} // namespace doctor
