#include "doctor/verdict/LogReport.h"

#include "doctor/log/LogFiles.h"
#include "doctor/log/ReadLogs.h"
#include "doctor/verdict/ReportBuilder.h"

namespace doctor
{

Report ReportOfLogs(std::vector<std::filesystem::path> const& paths, std::optional<LogTime> asOf)
{
    ReportBuilder builder;
    auto const begin = [&](std::filesystem::path const& file) { builder.Begin(file); };
    auto const take = [&](Entry const& entry) {
        builder.Add(entry);
        return true;
    };
    auto const unread = ReadLogs(FindLogs(paths), begin, take);
    auto report = builder.End(asOf);
    NoteUnread(report, unread);
    return report;
}

void NoteUnread(Report& report, std::vector<std::string> const& unread)
{
    for (auto const& failure : unread)
    {
        Finding finding;
        finding.result = Result::NotSeen;
        finding.what = "Not read: " + failure + ".";
        finding.cause = "Its access rights, or another program that has it open for itself: so has the app, while it "
                        "makes a copy.";
        finding.advice = "Read again. If that fails as well, read as the user who runs the app.";
        report.remarks.push_back(std::move(finding));
    }
}

} // namespace doctor
