#include "simulator/scenario/Helpers.h"

#include "simulator/base/Error.h"
#include "simulator/base/Files.h"
#include "simulator/base/Process.h"
#include "simulator/base/Text.h"

#include <algorithm>

namespace sim
{

namespace
{

// The helper's path: VELMO_SIM_HELPER, or a file beside this program or in the build's folder of the helper.
std::wstring FindHelper()
{
    if (auto const path = EnvironmentValue(L"VELMO_SIM_HELPER"))
    {
        return *path;
    }
    auto const folder = ParentOf(ProgramPath());
    for (auto const& candidate : {folder + L"\\helper.exe", ParentOf(folder) + L"\\helper\\helper.exe"})
    {
        if (FileExists(candidate))
        {
            return candidate;
        }
    }
    throw Error(L"there is no helper.exe beside this program: build it, or set VELMO_SIM_HELPER to it");
}

// A new file with an inheritable handle.
Handle NewOutput(std::wstring const& path)
{
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    Handle file(CreateFileW(path.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ, &inherited, CREATE_ALWAYS, 0, nullptr));
    return file ? std::move(file) : throw Error(L"cannot write " + path + L": " + SystemMessage(GetLastError()));
}

} // namespace

Helpers::~Helpers()
{
    for (auto const& [name, process] : m_processes)
    {
        TerminateProcess(process.handle.Get(), 1);
    }
}

void Helpers::Start(std::wstring const& name, std::vector<std::wstring> const& arguments)
{
    if (m_processes.contains(name))
    {
        throw Error(L"that helper runs already: give the other one a name of its own, @NAME");
    }
    MakeFolder(m_device.HelpersFolder());
    auto path = m_device.HelpersFolder() + L"\\" + std::to_wstring(++m_started) + L".txt";
    auto const output = NewOutput(path);
    m_processes.emplace(name, Process{StartProcess(FindHelper(), arguments, output.Get()), std::move(path)});
}

void Helpers::Kill(std::wstring const& name)
{
    auto const found = m_processes.find(name);
    if (found == m_processes.end())
    {
        throw Error(L"that helper does not run");
    }
    found->second.isKilled = true;
    TerminateProcess(found->second.handle.Get(), 1);
}

std::vector<Helpers::Output> Helpers::Take()
{
    std::vector<Output> output;
    for (auto entry = m_processes.begin(); entry != m_processes.end();)
    {
        auto const current = entry++;
        auto& [name, process] = *current;
        // Before its lines are read: after its end it prints none.
        auto const hasEnded = WaitForSingleObject(process.handle.Get(), 0) == WAIT_OBJECT_0;
        TakeLines(name, process, output);
        DWORD exitCode = 0;
        if (hasEnded && GetExitCodeProcess(process.handle.Get(), &exitCode))
        {
            output.push_back({name, L"", exitCode, process.isKilled});
            m_processes.erase(current);
        }
    }
    return output;
}

// Complete lines only.
void Helpers::TakeLines(std::wstring const& name, Process& process, std::vector<Output>& lines)
{
    auto const bytes = ReadBytes(process.output, process.taken);
    std::string_view rest = bytes;
    while (auto line = TakeUtf8Line(rest))
    {
        lines.push_back({name, std::move(*line), std::nullopt});
    }
    process.taken += bytes.size() - rest.size();
}

std::vector<std::wstring> Helpers::Running() const
{
    std::vector<std::wstring> names(m_processes.size());
    std::ranges::transform(m_processes, names.begin(), [](auto const& process) { return process.first; });
    return names;
}

} // namespace sim
