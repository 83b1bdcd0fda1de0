#pragma once
#include "simulator/base/Handle.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace sim
{

// The path of a module of this process; of the program.
std::wstring ModulePath(HMODULE module);
std::wstring ProgramPath();

// nullopt for a variable that is not set, or longer than MAX_PATH.
std::optional<std::wstring> EnvironmentValue(std::wstring const& name);

struct ProcessRequest
{
    std::wstring executable;
    std::wstring commandLine;
    std::wstring folder = {};                                            // its current one; empty: the caller's
    std::vector<std::pair<std::wstring, std::wstring>> environment = {}; // in place of the caller's own values
};

// Starts a process. output: an inheritable file or pipe for its output; without one the process has no console. Returns
// a null handle, and leaves the reason in GetLastError, on failure.
Handle StartProcess(ProcessRequest request, HANDLE output = nullptr);

// Starts a program with arguments. Throws Error.
Handle StartProcess(std::wstring const& program, std::vector<std::wstring> const& arguments, HANDLE output = nullptr);

} // namespace sim
