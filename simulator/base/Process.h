#pragma once
#include "simulator/base/Handle.h"

#include <optional>
#include <string>
#include <vector>

namespace sim
{

// The path of a module of this process; of the program.
std::wstring ModulePath(HMODULE module);
std::wstring ProgramPath();

// nullopt for a variable that is not set, or longer than MAX_PATH.
std::optional<std::wstring> EnvironmentValue(std::wstring const& name);

// Starts a program with arguments. output: an inheritable file or pipe for its output; without one the process has no
// console. Throws Error.
Handle StartProcess(std::wstring const& program, std::vector<std::wstring> const& arguments, HANDLE output = nullptr);

} // namespace sim
