#include "doctor/CommandLine.h"

#include "doctor/base/Error.h"
#include "doctor/cli/Commands.h"

#include <CLI/CLI.hpp>
#include <algorithm>

namespace doctor
{

ExitCode RunCommandLine(std::vector<std::string> words, Surroundings const& surroundings)
try
{
    CLI::App app("doctor reads the logs of VelmoNotificationClient.", "doctor");
    app.require_subcommand(1);
    app.allow_windows_style_options(false); // a path may begin with a slash
    RunCommand run;
    AddLive(app, surroundings, run);
    AddLog(app, surroundings, run);
    AddShow(app, surroundings, run);
    try
    {
        std::ranges::reverse(words); // as the parser takes them
        app.parse(std::move(words));
    }
    catch (CLI::CallForHelp const&)
    {
        surroundings.write(app.help());
        return ExitCode::Done;
    }
    catch (CLI::ParseError const& error)
    {
        surroundings.writeError("doctor: " + std::string(error.what()) + "\ndoctor --help lists the commands");
        return ExitCode::UsageError;
    }
    return run();
}
catch (std::exception const& error) // Error, and what the system's lack of memory or the library throws
{
    surroundings.writeError("doctor: " + std::string(error.what()));
    return ExitCode::Failed;
}

} // namespace doctor
