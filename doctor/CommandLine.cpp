#include "doctor/CommandLine.h"

#include "doctor/base/Error.h"
#include "doctor/live/FindingText.h"
#include "utils/Utf8.h"

#include <CLI/CLI.hpp>
#include <algorithm>

namespace doctor
{

namespace
{

// What the options of `show` are read into, as texts.
struct ShowWords
{
    std::vector<std::string> paths;
    std::string since;
    std::string level;
    bool isColoured = false;
    bool isJson = false;
};

// The same for `live`.
struct LiveWords
{
    std::string log;
    unsigned seconds = 60;
    bool isJson = false;
};

template <typename Parse>
CLI::Validator ParsedBy(Parse parse, std::string const& expected)
{
    return {[=](std::string const& text) { return parse(text) ? std::string() : "'" + text + "' is no " + expected; },
            ""};
}

std::optional<zant::LogLevel> LevelOfWord(std::string word)
{
    std::ranges::transform(word, word.begin(),
                           [](unsigned char each) { return static_cast<char>(std::toupper(each)); });
    return LevelOf(word);
}

void AddShow(CLI::App& app, ShowOptions& options, ShowWords& words)
{
    auto* const show =
        app.add_subcommand("show", "writes the lines of log files, decoded, in the order of their copies");
    show->add_option("PATH", words.paths, "log files, or folders with log files")->required();
    show->add_flag("--follow", options.follows, "goes on with what is added to the newest of them");
    show->add_option("--since", words.since, R"(lines from that local time on: 2024-01-05, or "2024-01-05 09:30")")
        ->check(ParsedBy(ParseTime, R"(time: 2024-01-05, "2024-01-05 09:30" or "2024-01-05 09:30:12")"));
    show->add_option("--thread", options.filter.thread, "lines of that thread");
    show->add_option("--level", words.level,
                     "lines of that level and more severe ones: trace debug info warn error fatal")
        ->check(ParsedBy(LevelOfWord, "level: trace, debug, info, warn, error or fatal"));
    show->add_option("--category", options.filter.category, "lines of that category: ZEBMain, AppService, …");
    show->add_option("--grep", options.filter.text, "lines whose message holds the text, in upper or lower case");
    show->add_flag("--json", words.isJson, "an object for each line");
    show->add_flag("--colour", words.isColoured, "coloured by level, for a terminal");
    show->add_flag("--full", options.format.hasFullUris, "with whole channel URIs: addresses that anyone can push to");
}

void RunShow(ShowOptions& options, ShowWords const& words, Surroundings const& surroundings)
{
    for (auto const& path : words.paths)
    {
        options.paths.emplace_back(zant::ToWide(path).value_or(L""));
    }
    options.filter.since = ParseTime(words.since);
    options.filter.level = LevelOfWord(words.level);
    options.format.form = words.isColoured ? Form::Coloured : Form::Text;
    if (words.isJson)
    {
        options.format.form = Form::Json;
    }
    Show(options, surroundings.write, surroundings.pause);
}

void AddLive(CLI::App& app, LiveOptions& options, LiveWords& words)
{
    auto* const live = app.add_subcommand("live", "looks at the app on this machine, and asks it for its channel");
    live->add_option("--log", words.log, "the app's log, if it is not where Windows has it");
    live->add_option("--timeout", words.seconds, "how many seconds to wait for the app, and for the channel (60)")
        ->check(CLI::Range(1, 3600));
    live->add_flag("--json", words.isJson, "an object for each finding");
    live->add_flag("--full", options.hasFullUris, "with whole channel URIs: addresses that anyone can push to");
}

Outcome RunLive(LiveOptions& options, LiveWords const& words, Surroundings const& surroundings)
{
    if (!words.log.empty())
    {
        options.log = zant::ToWide(words.log).value_or(L"");
    }
    options.limit = std::chrono::seconds(words.seconds);
    auto const findings = surroundings.look(options);
    for (auto const& finding : findings)
    {
        surroundings.write(words.isJson ? FindingJson(finding) : FindingText(finding));
    }
    auto const hasFailed = [](Finding const& finding) { return finding.result == Result::Failed; };
    return std::ranges::any_of(findings, hasFailed) ? Outcome::Failed : Outcome::Done;
}

} // namespace

Outcome RunCommandLine(std::vector<std::string> words, Surroundings const& surroundings)
try
{
    CLI::App app("doctor reads the logs of VelmoNotificationClient.", "doctor");
    app.require_subcommand(1);
    app.allow_windows_style_options(false); // a path may begin with a slash
    ShowOptions showOptions;
    ShowWords showWords;
    AddShow(app, showOptions, showWords);
    LiveOptions liveOptions;
    LiveWords liveWords;
    AddLive(app, liveOptions, liveWords);
    try
    {
        std::ranges::reverse(words); // as the parser takes them
        app.parse(std::move(words));
    }
    catch (CLI::CallForHelp const&)
    {
        surroundings.write(app.help());
        return Outcome::Done;
    }
    catch (CLI::ParseError const& error)
    {
        surroundings.writeError("doctor: " + std::string(error.what()) + "\ndoctor --help lists the commands");
        return Outcome::UsageError;
    }
    if (app.got_subcommand("live"))
    {
        return RunLive(liveOptions, liveWords, surroundings);
    }
    RunShow(showOptions, showWords, surroundings);
    return Outcome::Done;
}
catch (Error const& error)
{
    surroundings.writeError("doctor: " + std::string(error.what()));
    return Outcome::Failed;
}

} // namespace doctor
