#include "doctor/cli/Commands.h"
#include "doctor/cli/ParsedBy.h"

#include <algorithm>
#include <memory>

namespace doctor
{

namespace
{

// What the options are read into.
struct ShowWords
{
    std::vector<std::string> paths;
    std::string ownLog;
    std::string since;
    std::string level;
    bool isColoured = false;
    bool isJson = false;
    ShowOptions options;
};

std::optional<zant::LogLevel> LevelOfWord(std::string word)
{
    std::ranges::transform(word, word.begin(),
                           [](unsigned char each) { return static_cast<char>(std::toupper(each)); });
    return LevelOf(word);
}

Form FormFor(ShowWords const& words, Surroundings const& surroundings)
{
    if (words.isJson)
    {
        return Form::Json;
    }
    return surroundings.AreColoured(words.isColoured) ? Form::Coloured : Form::Text;
}

ExitCode RunShow(ShowWords const& words, Surroundings const& surroundings)
{
    auto options = words.options;
    options.paths = PathsOf(words.paths);
    if (options.paths.empty())
    {
        options.ownLog = OwnLog(words.ownLog, surroundings);
    }
    options.filter.since = ParseTime(words.since);
    options.filter.level = LevelOfWord(words.level);
    options.format.form = FormFor(words, surroundings);
    auto const writeError = [&](std::string_view text) { surroundings.writeError("doctor: " + std::string(text)); };
    return Show(options, surroundings.write, writeError, surroundings.pause) ? ExitCode::Done : ExitCode::Failed;
}

} // namespace

void AddShow(CLI::App& app, Surroundings const& surroundings, RunCommand& run)
{
    auto const words = std::make_shared<ShowWords>();
    auto& options = words->options;
    auto* const show =
        app.add_subcommand("show", "writes the lines of log files, decoded, in the order of their copies");
    show->add_option("PATH", words->paths, "log files, or folders with log files")->required(!surroundings.ownLog);
    show->add_option("--log", words->ownLog, ownLogHelp);
    show->add_flag("--follow", options.follows, "goes on with what is added to the newest of them");
    show->add_option("--since", words->since, R"(lines from that local time on: 2024-01-05, or "2024-01-05 09:30")")
        ->check(ParsedBy(ParseTime, expectedTime));
    show->add_option("--thread", options.filter.thread, "lines of that thread");
    show->add_option("--level", words->level,
                     "lines of that level and more severe ones: trace debug info warn error fatal")
        ->check(ParsedBy(LevelOfWord, "level: trace, debug, info, warn, error or fatal"));
    show->add_option("--category", options.filter.category, "lines of that category: ZEBMain, AppService, …");
    show->add_option("--grep", options.filter.text, "lines whose message holds the text, in upper or lower case");
    show->add_flag("--json", words->isJson, "an object for each line");
    show->add_flag("--colour", words->isColoured, "coloured by level, also where the output is no console");
    show->add_flag("--full", options.format.hasFullUris, "with whole channel URIs: addresses that anyone can push to");
    show->callback([=, &surroundings, &run] { run = [=, &surroundings] { return RunShow(*words, surroundings); }; });
}

} // namespace doctor
