// Loaded into the app's process, it counts the system calls of all threads, notes them, and ends the process at one of
// them: before it is made.

#include "explore/kill/watch/Stubs.h"
#include "explore/kill/watch/Watched.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>
#include <windows.h>

namespace explore::kill
{

namespace
{

// Never destroyed: other threads make calls until the process has ended.
struct Library
{
    std::vector<Stub> stubs;
    Watched* watched = nullptr; // null: this process is not watched
    HANDLE time = nullptr;
    std::uint32_t delay = 0; // the numbers of stubs
    std::uint32_t wait = 0;
    std::uint32_t terminate = 0;
};

Library* library = nullptr;

[[noreturn]] void AwaitEnd()
{
    for (;;)
    {
        YieldProcessor();
    }
}

// No call that comes later than the one at which the process ends is made.
void Count(Watched& watched, std::uint32_t stub)
{
    auto const at = watched.count.fetch_add(1);
    auto const killAt = watched.killAt.load();
    if (at < Watched::mostCalls && at < killAt)
    {
        watched.calls[at] = {stub, GetCurrentThreadId()};
    }
    if (at == killAt)
    {
        watched.isKilled = true;
        using Terminate = LONG(WINAPI*)(HANDLE, LONG);
        reinterpret_cast<Terminate>(library->stubs[library->terminate].original)(GetCurrentProcess(), killedCode);
    }
    if (at >= killAt)
    {
        AwaitEnd();
    }
}

// A wait for time alone of a second or more: a negative interval in units of 100 ns.
bool IsLongDelay(std::uint32_t stub, Arguments const& arguments)
{
    constexpr LONGLONG second = 10'000'000;
    auto const* const interval = static_cast<LARGE_INTEGER const*>(arguments.second);
    return stub == library->delay && interval != nullptr && interval->QuadPart <= -second;
}

// NtDelayExecution(alertable, interval) becomes NtWaitForSingleObject(time, alertable, interval).
void* AwaitTime(Arguments& arguments)
{
    arguments.third = arguments.second;
    arguments.second = arguments.first;
    arguments.first = library->time;
    return library->stubs[library->wait].original;
}

void* OnSystemCall(std::uint32_t stub, Arguments& arguments)
{
    if (library->watched != nullptr)
    {
        Count(*library->watched, stub);
    }
    return IsLongDelay(stub, arguments) ? AwaitTime(arguments) : library->stubs[stub].original;
}

std::uint32_t NumberOf(std::string_view name)
{
    auto const found =
        std::ranges::find(library->stubs, name, [](Stub const& stub) { return std::string_view(stub.name); });
    return static_cast<std::uint32_t>(found - library->stubs.begin());
}

Watched* OpenSection(std::wstring const& name)
{
    auto* const section = OpenFileMappingW(FILE_MAP_ALL_ACCESS, FALSE, name.c_str());
    return section == nullptr
               ? nullptr
               : static_cast<Watched*>(MapViewOfFile(section, FILE_MAP_ALL_ACCESS, 0, 0, sizeof(Watched)));
}

bool Watch(std::wstring const& name)
{
    auto* const watched = OpenSection(name);
    auto* const time = OpenEventW(SYNCHRONIZE, FALSE, (name + timeSuffix).c_str());
    library = new Library{FindStubs()};
    auto& stubs = library->stubs;
    library->time = time;
    library->delay = NumberOf("NtDelayExecution");
    library->wait = NumberOf("NtWaitForSingleObject");
    library->terminate = NumberOf("NtTerminateProcess");
    if (watched == nullptr || time == nullptr || stubs.size() > Watched::mostFunctions ||
        std::max({library->delay, library->wait, library->terminate}) >= stubs.size())
    {
        return false;
    }
    if (watched->isAwaited.exchange(false))
    {
        watched->functions = static_cast<std::uint32_t>(stubs.size());
        for (std::size_t number = 0; number < stubs.size(); ++number)
        {
            std::strncpy(watched->names[number], stubs[number].name, sizeof watched->names[number] - 1);
        }
        library->watched = watched;
    }
    Replace(stubs, OnSystemCall);
    return true;
}

} // namespace

} // namespace explore::kill

BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void*) // NOLINT(misc-use-internal-linkage)
{
    using namespace explore::kill;
    wchar_t name[MAX_PATH];
    auto const isReady =
        reason != DLL_PROCESS_ATTACH || (GetEnvironmentVariableW(sectionVariable, name, MAX_PATH) != 0 && Watch(name));
    return isReady ? TRUE : FALSE;
}
