#pragma once
#include "doctor/live/LiveOptions.h"
#include "doctor/show/ShowCommand.h"
#include "doctor/verdict/Finding.h"

#include <functional>
#include <string>
#include <vector>

namespace doctor
{

// The exit code.
enum class Outcome
{
    Done = 0,
    Failed = 1, // also when something on the machine does not work
    UsageError = 2
};

// What the program uses of the system.
struct Surroundings
{
    WriteText write;                                                   // takes the lines of what was asked for
    WriteText writeError;                                              // takes a sentence about what fails
    std::function<void()> pause;                                       // between two looks at what changes
    std::function<std::vector<Finding>(LiveOptions const&)> look = {}; // at this machine
};

// Does what the words (UTF-8, without the program's name) ask for.
Outcome RunCommandLine(std::vector<std::string> words, Surroundings const& surroundings);

} // namespace doctor
