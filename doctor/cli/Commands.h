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

// The log that is read where no path is given: the one that the word names, or the one where Windows has it. Throws
// Error where the system does not tell.
std::filesystem::path OwnLog(std::string const& word, Surroundings const& surroundings);

inline constexpr char ownLogHelp[] = "the app's log, if it is not where Windows has it";

// From UTF-8.
std::vector<std::filesystem::path> PathsOf(std::vector<std::string> const& texts);

} // namespace doctor
