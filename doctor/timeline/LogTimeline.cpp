#include "doctor/timeline/LogTimeline.h"

#include "doctor/log/LogFiles.h"
#include "doctor/log/ReadLogs.h"
#include "doctor/timeline/TimelineBuilder.h"
#include "doctor/verdict/LogReport.h"
#include "doctor/verdict/ReportBuilder.h"

namespace doctor
{

ReportAndTimeline TimelineOfLogs(std::vector<std::filesystem::path> const& paths, std::optional<LogTime> asOf,
                                 std::string const& title, bool hasFullUris)
{
    TimelineBuilder timeline(hasFullUris);
    ReportBuilder report(
        [&](Told const& told) { timeline.Add(told); },
        [&](Remark const& remark, LogPlace const& first, LogPlace const& last) { timeline.Add(remark, first, last); });
    auto const begin = [&](std::filesystem::path const& file) {
        report.Begin(file);
        timeline.Begin(file);
    };
    auto const take = [&](Entry const& entry) {
        timeline.Add(entry, report.Add(entry));
        return true;
    };
    auto const unread = ReadLogs(FindLogs(paths), begin, take);
    auto result = report.End(asOf);
    NoteUnread(result, unread);
    auto made = timeline.End(result, title);
    return {std::move(result), std::move(made)};
}

} // namespace doctor
