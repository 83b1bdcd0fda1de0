#include "doctor/base/Error.h"
#include "doctor/cli/Commands.h"
#include "doctor/cli/ParsedBy.h"
#include "doctor/log/LogFolder.h"
#include "doctor/timeline/LogTimeline.h"
#include "doctor/timeline/TimelineFiles.h"
#include "doctor/verdict/LogReport.h"
#include "doctor/verdict/ReportJson.h"
#include "doctor/verdict/ReportText.h"

#include <algorithm>
#include <memory>

namespace doctor
{

namespace
{

// What the options are read into.
struct LogWords
{
    std::vector<std::string> paths;
    std::string ownLog;
    std::string asOf;
    bool isFinished = false;
    bool isColoured = false;
    bool isJson = false;
    std::string page; // a path; empty: none
    std::string trace;
    bool hasFullUris = false;
};

std::optional<LogTime> AsOf(LogWords const& words, Surroundings const& surroundings)
{
    if (words.isFinished)
    {
        return std::nullopt;
    }
    auto const given = ParseTime(words.asOf);
    return given ? given : surroundings.now();
}

// Nobody wants one of the files that are read to become a page.
std::string RefusedAsOutput(std::string const& path)
{
    return HasLogName(PathsOf({path}).front()) ? "'" + path + "' is named as a log, which would be overwritten"
                                               : std::string();
}

// A log may have any name where it is named itself.
void RefuseToOverwrite(Report const& report, std::string const& path)
{
    if (path.empty())
    {
        return;
    }
    auto const output = std::filesystem::absolute(PathsOf({path}).front()).lexically_normal();
    if (std::ranges::any_of(report.files, [&](FileReport const& file) { return IsSameFile(file.path, output); }))
    {
        throw Error("'" + path + "' is one of the logs, which would be overwritten");
    }
}

Report ReportWithFiles(std::vector<std::filesystem::path> const& paths, std::optional<LogTime> asOf,
                       LogWords const& words)
{
    if (words.page.empty() && words.trace.empty())
    {
        return ReportOfLogs(paths, asOf);
    }
    auto const made = TimelineOfLogs(paths, asOf, "VelmoNotificationClient", words.hasFullUris);
    RefuseToOverwrite(made.report, words.page);
    RefuseToOverwrite(made.report, words.trace);
    WriteTimelineFiles(made.timeline, {PathsOf({words.page}).front(), PathsOf({words.trace}).front()});
    return made.report;
}

ExitCode RunLog(LogWords const& words, Surroundings const& surroundings)
{
    auto paths = PathsOf(words.paths);
    if (paths.empty())
    {
        paths.push_back(OwnLog(words.ownLog, surroundings).parent_path()); // with its copies
    }
    auto const report = ReportWithFiles(paths, AsOf(words, surroundings), words);
    surroundings.write(words.isJson ? ReportJson(report)
                                    : ReportText(report, surroundings.AreColoured(words.isColoured)));
    return ExitCodeOf(report.Verdict());
}

} // namespace

void AddLog(CLI::App& app, Surroundings const& surroundings, RunCommand& run)
{
    auto const words = std::make_shared<LogWords>();
    auto* const log = app.add_subcommand("log", "says of each stage whether it worked, by what the logs tell");
    log->add_option("PATH", words->paths, "log files, or folders with log files")->required(!surroundings.ownLog);
    log->add_option("--log", words->ownLog, ownLogHelp);
    auto* const asOf = log->add_option("--as-of", words->asOf,
                                       "the local time when the logs were taken: what is missing by then is overdue; "
                                       "otherwise now")
                           ->check(ParsedBy(ParseTime, expectedTime));
    log->add_flag("--finished", words->isFinished, "nothing writes to the logs any more: what is missing never came")
        ->excludes(asOf);
    log->add_flag("--json", words->isJson, "one object");
    log->add_flag("--colour", words->isColoured, "in colours, also where the output is no console");
    log->add_option("--html", words->page, "writes a page with the timeline into that file")
        ->check(CLI::Validator(RefusedAsOutput, ""));
    log->add_option("--trace", words->trace,
                    "writes the timeline as trace events into that file, for Perfetto or the browser's tracing page")
        ->check(CLI::Validator(RefusedAsOutput, ""));
    log->add_flag("--full", words->hasFullUris,
                  "the timeline with whole channel URIs: addresses that anyone can push to");
    log->callback([=, &surroundings, &run] { run = [=, &surroundings] { return RunLog(*words, surroundings); }; });
}

} // namespace doctor
