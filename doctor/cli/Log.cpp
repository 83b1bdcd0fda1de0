#include "doctor/cli/Commands.h"
#include "doctor/cli/ParsedBy.h"
#include "doctor/verdict/LogReport.h"
#include "doctor/verdict/ReportText.h"

#include <memory>

namespace doctor
{

namespace
{

// What the options are read into.
struct LogWords
{
    std::vector<std::string> paths;
    std::string asOf;
    bool isFinished = false;
    bool isColoured = false;
    bool isJson = false;
};

ExitCode ExitCodeOf(Result verdict)
{
    switch (verdict)
    {
    case Result::Worked:
        return ExitCode::Done;
    case Result::Failed:
        return ExitCode::StageFailed;
    default:
        return ExitCode::CannotBeTold;
    }
}

std::optional<LogTime> AsOf(LogWords const& words, Surroundings const& surroundings)
{
    if (words.isFinished)
    {
        return std::nullopt;
    }
    auto const given = ParseTime(words.asOf);
    return given ? given : surroundings.now();
}

ExitCode RunLog(LogWords const& words, Surroundings const& surroundings)
{
    auto paths = PathsOf(words.paths);
    if (paths.empty())
    {
        paths.push_back(surroundings.ownLog());
    }
    auto const report = ReportOfLogs(paths, AsOf(words, surroundings));
    surroundings.write(words.isJson ? ReportJson(report) : ReportText(report, words.isColoured));
    return ExitCodeOf(report.Verdict());
}

} // namespace

void AddLog(CLI::App& app, Surroundings const& surroundings, RunCommand& run)
{
    auto const words = std::make_shared<LogWords>();
    auto* const log = app.add_subcommand("log", "says of each stage whether it worked, by what the logs tell");
    log->add_option("PATH", words->paths, "log files, or folders with log files")->required(!surroundings.ownLog);
    auto* const asOf = log->add_option("--as-of", words->asOf,
                                       "the local time when the logs were taken: what is missing by then is overdue; "
                                       "otherwise now")
                           ->check(ParsedBy(ParseTime, expectedTime));
    log->add_flag("--finished", words->isFinished, "nothing writes to the logs any more: what is missing never came")
        ->excludes(asOf);
    log->add_flag("--json", words->isJson, "one object");
    log->add_flag("--colour", words->isColoured, "in colours, for a terminal");
    log->callback([=, &surroundings, &run] { run = [=, &surroundings] { return RunLog(*words, surroundings); }; });
}

} // namespace doctor
