#pragma once
#include "doctor/cli/ExitCode.h"
#include "doctor/cli/Surroundings.h"

#include <string>
#include <vector>

namespace doctor
{

// Does what the words (UTF-8, without the program's name) ask for.
ExitCode RunCommandLine(std::vector<std::string> words, Surroundings const& surroundings);

} // namespace doctor
