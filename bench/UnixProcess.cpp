#include "bench/UnixProcess.h"

#include "simulator/base/Error.h"
#include "simulator/base/Files.h"
#include "simulator/base/Text.h"

#include <sstream>
#include <vector>
#include <windows.h>

namespace bench
{

namespace
{

// Those of processes in /proc, those of threads in a process's folder of tasks.
std::vector<std::wstring> NumberedFolders(std::wstring const& folder)
{
    std::vector<std::wstring> numbered;
    WIN32_FIND_DATAW found;
    auto* const search = FindFirstFileW((folder + L"\\*").c_str(), &found);
    for (BOOL more = search != INVALID_HANDLE_VALUE; more; more = FindNextFileW(search, &found))
    {
        if (found.cFileName[0] >= L'0' && found.cFileName[0] <= L'9')
        {
            numbered.push_back(folder + L"\\" + found.cFileName);
        }
    }
    FindClose(search);
    return numbered;
}

std::wstring CommandLine(std::wstring const& process)
try
{
    return sim::ReadText(process + L"\\cmdline");
}
catch (sim::Error const&) // it has ended
{
    return {};
}

// The number after "name:" in one of the system's tables.
long long NumberIn(std::wstring const& file, std::wstring const& name)
{
    auto const text = sim::ReadText(file);
    auto const found = text.find(L"\n" + name + L":");
    if (found == text.npos)
    {
        throw sim::Error(L"there is no " + name + L" in " + file);
    }
    return std::stoll(text.substr(found + name.size() + 2));
}

} // namespace

UnixProcess::UnixProcess(std::wstring const& executable)
{
    for (auto const& process : NumberedFolders(L"Z:\\proc"))
    {
        if (CommandLine(process).starts_with(executable))
        {
            m_folder = process;
            return;
        }
    }
    throw sim::Error(L"no process was started from " + executable);
}

long long UnixProcess::PrivateKilobytes() const
{
    return NumberIn(m_folder + L"\\smaps_rollup", L"Private_Dirty");
}

long long UnixProcess::Threads() const
{
    return NumberIn(m_folder + L"\\status", L"Threads");
}

long long UnixProcess::PageFaults() const
{
    auto const text = sim::ReadText(m_folder + L"\\stat");
    // Behind the program's name, which may contain blanks: state, six numbers, minor faults, those of children, major.
    std::wistringstream fields(text.substr(text.rfind(L')') + 1));
    std::wstring skipped;
    long long minor = 0, major = 0;
    for (int field = 0; field < 7; ++field)
    {
        fields >> skipped;
    }
    fields >> minor >> skipped >> major;
    return minor + major;
}

long long UnixProcess::Waits() const
{
    long long waits = 0;
    for (auto const& thread : NumberedFolders(m_folder + L"\\task"))
    {
        waits += NumberIn(thread + L"\\status", L"voluntary_ctxt_switches");
    }
    return waits;
}

} // namespace bench
