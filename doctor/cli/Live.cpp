#include "doctor/base/Error.h"
#include "doctor/cli/Commands.h"
#include "doctor/verdict/FindingText.h"
#include "doctor/verdict/LogReport.h"
#include "doctor/verdict/ReportJson.h"
#include "doctor/verdict/ReportText.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>

namespace doctor
{

namespace
{

// What the options are read into.
struct LiveWords
{
    std::string log;
    unsigned seconds = 60;
    bool isJson = false;
    bool hasFullUris = false;
};

// What the app's log tells; nothing where it cannot be read, of which a finding tells.
std::optional<Report> ReportOfLog(std::filesystem::path const& log, Surroundings const& surroundings)
try
{
    return ReportOfLogs({log}, surroundings.now());
}
catch (Error const&)
{
    return std::nullopt;
}

void WriteLogReport(std::filesystem::path const& log, LiveWords const& words, Surroundings const& surroundings)
{
    if (auto const report = ReportOfLog(log, surroundings))
    {
        surroundings.write(words.isJson ? ReportJson(*report) : "\nBy the log: " + ReportText(*report, false));
    }
}

ExitCode RunLive(LiveWords const& words, Surroundings const& surroundings)
{
    LiveOptions options;
    if (!words.log.empty())
    {
        options.log = PathsOf({words.log}).front();
    }
    options.limit = std::chrono::seconds(words.seconds);
    options.hasFullUris = words.hasFullUris;
    auto const findings = surroundings.look(options);
    for (auto const& finding : findings)
    {
        surroundings.write(words.isJson ? FindingJson(finding) : FindingText(finding));
    }
    if (options.log || surroundings.ownLog)
    {
        WriteLogReport(options.log ? *options.log : surroundings.ownLog(), words, surroundings);
    }
    auto const hasFailed = std::ranges::find(findings, Result::Failed, &Finding::result) != findings.end();
    return hasFailed ? ExitCode::StageFailed : ExitCode::Done;
}

} // namespace

void AddLive(CLI::App& app, Surroundings const& surroundings, RunCommand& run)
{
    if (!surroundings.look)
    {
        return;
    }
    auto const words = std::make_shared<LiveWords>();
    auto* const live = app.add_subcommand("live", "looks at the app on this machine, and asks it for its channel");
    live->add_option("--log", words->log, ownLogHelp);
    live->add_option("--timeout", words->seconds, "how many seconds to wait for the app, and for the channel (60)")
        ->check(CLI::Range(1, 3600));
    live->add_flag("--json", words->isJson, "an object for each finding");
    live->add_flag("--full", words->hasFullUris, "with whole channel URIs: addresses that anyone can push to");
    live->callback([=, &surroundings, &run] { run = [=, &surroundings] { return RunLive(*words, surroundings); }; });
}

} // namespace doctor
