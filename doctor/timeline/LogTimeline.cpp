#include "doctor/timeline/LogTimeline.h"

#include "doctor/log/ReadLogs.h"
#include "doctor/timeline/TimelineBuilder.h"
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
    ReadLogs(paths, begin, [&](Entry const& entry) { timeline.Add(entry, report.Add(entry)); });
    auto result = report.End(asOf);
    auto made = timeline.End(result, title);
    return {std::move(result), std::move(made)};
}

} // namespace doctor
