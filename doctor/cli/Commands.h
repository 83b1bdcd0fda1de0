#pragma once
#include "doctor/cli/ExitCode.h"
#include "doctor/cli/Surroundings.h"

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace CLI
{

class App;

}

namespace doctor
{

// Runs the command that the words name. Throws Error.
using RunCommand = std::function<ExitCode()>;

// Each adds a command with its options; parsing its name sets `run`, which refers to the surroundings.
void AddLive(CLI::App& app, Surroundings const& surroundings, RunCommand& run);
void AddShow(CLI::App& app, Surroundings const& surroundings, RunCommand& run);
void AddLog(CLI::App& app, Surroundings const& surroundings, RunCommand& run);

// The log that is read where no path is given. Throws Error where the system does not tell.
std::filesystem::path OwnLog(Surroundings const& surroundings);

// From UTF-8.
std::vector<std::filesystem::path> PathsOf(std::vector<std::string> const& texts);

} // namespace doctor
