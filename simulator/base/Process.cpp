#include "simulator/base/Process.h"

#include "simulator/base/Error.h"
#include "simulator/base/Files.h"

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

Handle StartProcess(std::wstring const& program, std::vector<std::wstring> const& arguments, HANDLE output)
{
    auto commandLine = QuotedArgument(program);
    for (auto const& argument : arguments)
    {
        commandLine += L" " + QuotedArgument(argument);
    }
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = output ? STARTF_USESTDHANDLES : 0;
    startup.hStdOutput = output;
    startup.hStdError = output;
    PROCESS_INFORMATION started{};
    if (!CreateProcessW(program.c_str(), commandLine.data(), nullptr, nullptr, output ? TRUE : FALSE,
                        output ? 0 : DETACHED_PROCESS, nullptr, nullptr, &startup, &started))
    {
        throw Error(L"cannot start " + program + L": " + SystemMessage(GetLastError()));
    }
    Handle const thread(started.hThread);
    return Handle(started.hProcess);
}

} // namespace sim
