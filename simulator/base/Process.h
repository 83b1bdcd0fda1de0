#pragma once
#include "simulator/base/Handle.h"

#include <optional>
#include <string>
#include <vector>

namespace sim
{

// The path of a module that is loaded here; without one, of the program.
std::wstring ModulePath(HMODULE module);
std::wstring ProgramPath();

// Nothing for a variable that is not set, or is longer than a path may be.
std::optional<std::wstring> EnvironmentValue(std::wstring const& name);

// Starts a program with arguments. Its output goes to the file or pipe that can be inherited; without one it has no
// console either. Throws Error.
Handle StartProcess(std::wstring const& program, std::vector<std::wstring> const& arguments, HANDLE output = nullptr);

} // namespace sim
