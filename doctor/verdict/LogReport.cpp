#include "doctor/verdict/LogReport.h"

#include "doctor/log/LogFiles.h"
#include "doctor/verdict/ReportBuilder.h"

namespace doctor
{

Report ReportOfLogs(std::vector<std::filesystem::path> const& paths, std::optional<LogTime> asOf)
{
    ReportBuilder builder({}, {});
    for (auto const& file : LogFilesAt(paths))
    {
        builder.Begin(file);
        ReadLog(file, [&](Entry const& entry) {
            builder.Add(entry);
            return true;
        });
    }
    return builder.End(asOf);
}

} // namespace doctor
