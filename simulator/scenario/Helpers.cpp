#include "simulator/scenario/Helpers.h"

#include "simulator/base/Error.h"
#include "simulator/base/Files.h"
#include "simulator/base/Text.h"

#include <algorithm>
#include <thread>
#include <windows.h>

namespace sim
{

namespace
{

// Where it is: as VELMO_SIM_HELPER says, beside this program, or where the build puts it.
std::wstring FindHelper()
{
    wchar_t path[MAX_PATH];
    auto const length = GetEnvironmentVariableW(L"VELMO_SIM_HELPER", path, ARRAYSIZE(path));
    if (length > 0 && length < ARRAYSIZE(path))
    {
        return path;
    }
    GetModuleFileNameW(nullptr, path, ARRAYSIZE(path));
    auto const folder = ParentOf(path);
    for (auto const& candidate : {folder + L"\\helper.exe", ParentOf(folder) + L"\\helper\\helper.exe"})
    {
        if (FileExists(candidate))
        {
            return candidate;
        }
    }
    throw Error(L"there is no helper.exe beside this program: build it, or set VELMO_SIM_HELPER to it");
}

// As the program's runtime takes it apart again: backslashes count only before a quote.
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

// The two ends of a pipe; what is started inherits the one that is written to.
struct Pipe
{
    Pipe()
    {
        SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
        HANDLE read = nullptr;
        HANDLE write = nullptr;
        if (!CreatePipe(&read, &write, &inherited, 0))
        {
            throw Error(L"cannot make a pipe: " + SystemMessage(GetLastError()));
        }
        SetHandleInformation(read, HANDLE_FLAG_INHERIT, 0);
        from = Handle(read);
        to = Handle(write);
    }

    Handle from;
    Handle to;
};

Handle StartProcess(std::wstring const& program, std::vector<std::wstring> const& arguments, HANDLE output)
{
    auto commandLine = QuotedArgument(program);
    for (auto const& argument : arguments)
    {
        commandLine += L" " + QuotedArgument(argument);
    }
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = output;
    startup.hStdError = output;
    PROCESS_INFORMATION started{};
    if (!CreateProcessW(program.c_str(), commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
                        &started))
    {
        throw Error(L"cannot start " + program + L": " + SystemMessage(GetLastError()));
    }
    Handle const thread(started.hThread);
    return Handle(started.hProcess);
}

// The lines of what is read until its other end closes; a last one without a line end, too.
template <typename Function>
void ForEachLine(HANDLE from, Function const& function)
{
    auto const take = [&](std::string& line) {
        if (!line.empty() && line.back() == '\r')
        {
            line.pop_back();
        }
        function(FromUtf8(line));
        line.clear();
    };
    std::string line;
    char block[4096];
    for (DWORD size = 0; ReadFile(from, block, sizeof block, &size, nullptr) && size > 0;)
    {
        for (auto const character : std::string_view(block, size))
        {
            character == '\n' ? take(line) : line.push_back(character);
        }
    }
    if (!line.empty())
    {
        take(line);
    }
}

} // namespace

class Helpers::Process
{
  public:
    Process(std::wstring name, std::vector<std::wstring> const& arguments, Inbox<Said>& said)
    {
        Pipe pipe;
        m_process = StartProcess(FindHelper(), arguments, pipe.to.Get());
        m_output = std::move(pipe.from);
        // This process's end of what it writes to goes with `pipe`: else the reading would not end with it.
        m_reader = std::thread([this, name = std::move(name), &said] { Read(name, said); });
    }

    Process(Process const&) = delete;
    Process& operator=(Process const&) = delete;

    ~Process()
    {
        Kill();
        m_reader.join();
    }

    void Kill() const { TerminateProcess(m_process.Get(), 1); }

  private:
    void Read(std::wstring const& name, Inbox<Said>& said) const
    {
        ForEachLine(m_output.Get(), [&](std::wstring line) { said.Add({Now(), name, std::move(line), std::nullopt}); });
        WaitForSingleObject(m_process.Get(), INFINITE);
        DWORD exitCode = 0;
        GetExitCodeProcess(m_process.Get(), &exitCode);
        said.Add({Now(), name, L"", exitCode});
    }

    Handle m_process;
    Handle m_output;
    std::thread m_reader;
};

Helpers::Helpers() = default;

Helpers::~Helpers() = default;

void Helpers::Start(std::wstring const& name, std::vector<std::wstring> const& arguments)
{
    if (m_processes.contains(name))
    {
        throw Error(L"that helper runs already: give the other one a name of its own, @NAME");
    }
    m_processes.emplace(name, std::make_unique<Process>(name, arguments, m_said));
}

void Helpers::Kill(std::wstring const& name)
{
    auto const found = m_processes.find(name);
    if (found == m_processes.end())
    {
        throw Error(L"that helper does not run");
    }
    found->second->Kill();
}

std::optional<Helpers::Said> Helpers::Take()
{
    auto said = m_said.Take();
    if (said && said->exitCode)
    {
        m_processes.erase(said->name);
    }
    return said;
}

std::vector<std::wstring> Helpers::Running() const
{
    std::vector<std::wstring> names(m_processes.size());
    std::ranges::transform(m_processes, names.begin(), [](auto const& process) { return process.first; });
    return names;
}

} // namespace sim
