#pragma once
#include "doctor/show/ShowCommand.h"

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace doctor
{

// The exit code.
enum class Outcome
{
    Done = 0,
    Failed = 1,
    UsageError = 2
};

// What the program uses of the system.
struct Surroundings
{
    WriteText write;             // takes the lines of what was asked for
    WriteText writeError;        // takes a sentence about what fails
    std::function<void()> pause; // between two looks at what changes

    // The log that is shown where no path is given. None: a path has to be given.
    std::function<std::filesystem::path()> ownLog{};
};

// Does what the words (UTF-8, without the program's name) ask for.
Outcome RunCommandLine(std::vector<std::string> words, Surroundings const& surroundings);

} // namespace doctor
