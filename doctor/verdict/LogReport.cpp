#include "doctor/verdict/LogReport.h"

#include "doctor/log/ReadLogs.h"
#include "doctor/verdict/ReportBuilder.h"

namespace doctor
{

Report ReportOfLogs(std::vector<std::filesystem::path> const& paths, std::optional<LogTime> asOf)
{
    ReportBuilder builder;
    ReadLogs(
        paths, [&](std::filesystem::path const& file) { builder.Begin(file); },
        [&](Entry const& entry) { builder.Add(entry); });
    return builder.End(asOf);
}

} // namespace doctor
