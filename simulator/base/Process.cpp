#include "simulator/base/Process.h"

#include "simulator/base/Error.h"
#include "simulator/base/Files.h"
#include "simulator/base/Text.h"

#include <algorithm>

namespace sim
{

namespace
{

// As the C runtime parses it: backslashes are escaped only before a quote.
std::wstring QuotedArgument(std::wstring const& argument)
{
    std::wstring quoted = L"\"";
    std::size_t backslashes = 0;
    for (auto const character : argument)
    {
        if (character == L'"')
        {
            quoted.append(backslashes + 1, L'\\');
        }
        backslashes = character == L'\\' ? backslashes + 1 : 0;
        quoted += character;
    }
    return quoted.append(backslashes, L'\\') + L"\"";
}

std::vector<std::wstring> OwnEnvironment()
{
    std::vector<std::wstring> variables;
    auto* const block = GetEnvironmentStringsW();
    for (auto const* variable = block; *variable; variable += variables.back().size() + 1)
    {
        variables.emplace_back(variable);
    }
    FreeEnvironmentStringsW(block);
    return variables;
}

// This process's environment with the request's values in place of its own, as CreateProcess takes it: each variable
// ended by a zero, the whole by one more.
std::wstring EnvironmentBlock(ProcessRequest const& request)
{
    auto variables = OwnEnvironment();
    for (auto const& [name, value] : request.environment)
    {
        auto const start = name + L"=";
        std::erase_if(variables, [&](std::wstring const& variable) {
            return EqualIgnoringCase(std::wstring_view(variable).substr(0, start.size()), start);
        });
        variables.push_back(start + value);
    }
    // Windows searches the block as sorted.
    std::ranges::sort(variables, [](auto const& left, auto const& right) {
        return CompareStringOrdinal(left.c_str(), -1, right.c_str(), -1, TRUE) == CSTR_LESS_THAN;
    });
    std::wstring block;
    for (auto const& variable : variables)
    {
        block.append(variable.c_str(), variable.size() + 1);
    }
    return block + L'\0';
}

} // namespace

std::wstring ModulePath(HMODULE module)
{
    wchar_t path[MAX_PATH];
    return {path, GetModuleFileNameW(module, path, ARRAYSIZE(path))};
}

std::wstring ProgramPath()
{
    return ModulePath(nullptr);
}

std::optional<std::wstring> EnvironmentValue(std::wstring const& name)
{
    wchar_t value[MAX_PATH];
    auto const length = GetEnvironmentVariableW(name.c_str(), value, ARRAYSIZE(value));
    return length == 0 || length >= ARRAYSIZE(value) ? std::nullopt : std::optional(std::wstring(value, length));
}

Handle StartProcess(ProcessRequest request, HANDLE output)
{
    auto environment = EnvironmentBlock(request);
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = output ? STARTF_USESTDHANDLES : 0;
    startup.hStdOutput = output;
    startup.hStdError = output;
    PROCESS_INFORMATION started{};
    // Detached without output: it does not share the console that this process was started from.
    if (!CreateProcessW(request.executable.c_str(), request.commandLine.data(), nullptr, nullptr, output ? TRUE : FALSE,
                        CREATE_UNICODE_ENVIRONMENT | (output ? 0 : DETACHED_PROCESS), environment.data(),
                        request.folder.empty() ? nullptr : request.folder.c_str(), &startup, &started))
    {
        return {};
    }
    Handle const thread(started.hThread);
    return Handle(started.hProcess);
}

Handle StartProcess(std::wstring const& program, std::vector<std::wstring> const& arguments, HANDLE output)
{
    auto commandLine = QuotedArgument(program);
    for (auto const& argument : arguments)
    {
        commandLine += L" " + QuotedArgument(argument);
    }
    auto process = StartProcess({program, std::move(commandLine)}, output);
    return process ? std::move(process)
                   : throw Error(L"cannot start " + program + L": " + SystemMessage(GetLastError()));
}

} // namespace sim
