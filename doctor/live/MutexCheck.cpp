#include "doctor/live/MutexCheck.h"

#include "doctor/base/SystemText.h"
#include "doctor/live/MakeFinding.h"
#include "doctor/live/SystemFunction.h"
#include "utils/UniqueHandle.h"

#include <memory>
#include <optional>
#include <thread>

namespace doctor
{

namespace
{

constexpr wchar_t mutexName[] = L"KZEB.log";
constexpr DWORD waitMilliseconds = 2000;

using DeriveSid = HRESULT WINAPI(PCWSTR container, PSID* sid);
using NamedObjectPath = BOOL WINAPI(HANDLE token, PSID sid, ULONG length, LPWSTR path, PULONG needed);

struct SidFree
{
    void operator()(PSID sid) const noexcept { FreeSid(sid); }
};

// The folder of the named objects of a package's processes; nothing where apps have none.
std::optional<std::wstring> ContainerPath(std::wstring const& family)
{
    auto* const derive = SystemFunction<DeriveSid>(L"userenv.dll", "DeriveAppContainerSidFromAppContainerName");
    auto* const find = SystemFunction<NamedObjectPath>(L"kernel32.dll", "GetAppContainerNamedObjectPath");
    PSID derived = nullptr;
    if (derive == nullptr || find == nullptr || FAILED(derive(family.c_str(), &derived)))
    {
        return std::nullopt;
    }
    std::unique_ptr<void, SidFree> const sid(derived);
    wchar_t path[MAX_PATH] = {};
    ULONG needed = 0;
    return find(nullptr, sid.get(), MAX_PATH, path, &needed) ? std::optional<std::wstring>(path) : std::nullopt;
}

bool IsAbsent(DWORD error)
{
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND || error == ERROR_INVALID_NAME ||
           error == ERROR_BAD_PATHNAME;
}

// The mutex, or why there is none.
struct Opened
{
    zant::UniqueHandle mutex;
    DWORD error = ERROR_FILE_NOT_FOUND;
};

Opened OpenExisting(std::wstring const& family)
{
    Opened opened;
    for (auto const& name : MutexNames(family))
    {
        opened.mutex = zant::UniqueHandle(OpenMutexW(SYNCHRONIZE, FALSE, name.c_str()));
        opened.error = opened.mutex ? ERROR_SUCCESS : GetLastError();
        if (!IsAbsent(opened.error))
        {
            break;
        }
    }
    return opened;
}

// On a thread of its own, which ends as the owner of a mutex that it gets abandoned: so the mutex is abandoned again.
DWORD WaitOnce(HANDLE mutex)
{
    DWORD outcome = WAIT_FAILED;
    std::thread([&] {
        outcome = WaitForSingleObject(mutex, waitMilliseconds);
        if (outcome == WAIT_OBJECT_0)
        {
            ReleaseMutex(mutex);
        }
    }).join();
    return outcome;
}

Finding MutexFree(std::string const& what)
{
    return Worked(Stage::StartUp, what);
}

Finding MutexCannotBeTold(std::string const& why)
{
    return CannotBeTold(Stage::StartUp, "Whether the log's mutex is free cannot be told: " + why + ".",
                        "Run the doctor as the user who runs the app, without elevation.");
}

Finding NoMutex(DWORD error, bool appRuns)
{
    if (!IsAbsent(error))
    {
        return MutexCannotBeTold(SystemText(error));
    }
    return appRuns ? MutexCannotBeTold("the app runs, and its mutex is not found")
                   : MutexFree("The log's mutex is free: no process uses it.");
}

} // namespace

std::vector<std::wstring> MutexNames(std::wstring const& family)
{
    std::vector<std::wstring> names;
    if (auto const container = ContainerPath(family))
    {
        names.push_back(*container + L"\\" + mutexName);
        DWORD session = 0;
        if (ProcessIdToSessionId(GetCurrentProcessId(), &session))
        {
            names.push_back(L"Session\\" + std::to_wstring(session) + L"\\" + names.front());
        }
    }
    names.emplace_back(mutexName);
    return names;
}

Finding MutexFinding(std::wstring const& family, bool appRuns)
{
    auto const opened = OpenExisting(family);
    if (!opened.mutex)
    {
        return NoMutex(opened.error, appRuns);
    }
    switch (WaitOnce(opened.mutex.Get()))
    {
    case WAIT_OBJECT_0:
        return MutexFree("The log's mutex is free.");
    case WAIT_ABANDONED:
        return MutexFree("The log's mutex is free; its last owner ended in the middle of a line.");
    case WAIT_TIMEOUT:
        return Failed(Stage::StartUp, "The log's mutex is not free within 2 s.",
                      "A process of the app was suspended in the middle of a line: until it is resumed, all others "
                      "write no line.",
                      "Look in the Task Manager for a suspended VelmoNotificationClient.exe, and end it.");
    default:
        return MutexCannotBeTold("the wait for it fails");
    }
}

} // namespace doctor
