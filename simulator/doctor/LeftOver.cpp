#include "simulator/doctor/LeftOver.h"

#include "simulator/base/Handle.h"
#include "simulator/base/Text.h"

#include <algorithm>
#include <map>
#include <windows.h>

namespace sim
{

namespace
{

// Whether the process with that id runs the program with which the command line begins: the system reuses ids.
bool Runs(unsigned long id, std::wstring const& command)
{
    Handle const process(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION | SYNCHRONIZE, FALSE, id));
    wchar_t program[MAX_PATH];
    DWORD length = MAX_PATH;
    return process && WaitForSingleObject(process.Get(), 0) == WAIT_TIMEOUT &&
           QueryFullProcessImageNameW(process.Get(), 0, program, &length) != FALSE &&
           EqualIgnoringCase(command.substr(0, length + 2), L"\"" + std::wstring(program, length) + L"\"");
}

} // namespace

std::vector<unsigned long> LeftOver(std::vector<Event> const& journal, Moment since)
{
    for (auto const& event : journal)
    {
        since = event.kind == L"broker-lost" ? std::max(since, event.time) : since;
    }
    std::map<unsigned long, std::wstring> started; // and their command lines
    for (auto const& event : journal)
    {
        auto const id = ParseNumber(event.Detail(L"pid").value_or(L"")).value_or(0);
        auto const isStart = event.kind == L"app-started" || event.kind == L"desktop-started";
        if (isStart && event.time < since)
        {
            started[id] = event.Detail(L"command").value_or(L"");
        }
        else if (id != 0)
        {
            started.erase(id);
        }
    }
    std::vector<unsigned long> running;
    for (auto const& [id, command] : started)
    {
        if (Runs(id, command))
        {
            running.push_back(id);
        }
    }
    return running;
}

} // namespace sim
