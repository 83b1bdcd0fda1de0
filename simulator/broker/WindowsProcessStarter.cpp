#include "simulator/broker/WindowsProcessStarter.h"

#include "simulator/base/Text.h"

#include <algorithm>
#include <atomic>
#include <windows.h>

#include <winternl.h>

// Of the whole process; the documented functions know threads only.
extern "C" NTSTATUS NTAPI NtSuspendProcess(HANDLE process);
extern "C" NTSTATUS NTAPI NtResumeProcess(HANDLE process);

namespace sim
{

namespace
{

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

// Its processes end with its last handle.
Handle MakeJob()
{
    Handle job(CreateJobObjectW(nullptr, nullptr));
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    SetInformationJobObject(job.Get(), JobObjectExtendedLimitInformation, &limits, sizeof limits);
    return job;
}

} // namespace

// A process until it has been seen to end.
class WindowsProcessStarter::Watch
{
  public:
    Watch(Handle process, unsigned long id, Ended const& ended)
        : m_process(std::move(process)), m_id(id), m_ended(ended), m_wait(CreateThreadpoolWait(OnEnd, this, nullptr))
    {
    }

    Watch(Watch const&) = delete;
    Watch& operator=(Watch const&) = delete;

    ~Watch()
    {
        SetThreadpoolWait(m_wait, nullptr, nullptr);
        WaitForThreadpoolWaitCallbacks(m_wait, TRUE);
        CloseThreadpoolWait(m_wait);
    }

    void Begin() { SetThreadpoolWait(m_wait, m_process.Get(), nullptr); }

    bool IsOver() const noexcept { return m_isOver; }

    bool Runs(unsigned long id) const noexcept { return id == m_id && !m_isOver; }

    HANDLE Process() const noexcept { return m_process.Get(); }

  private:
    static void CALLBACK OnEnd(PTP_CALLBACK_INSTANCE, void* context, PTP_WAIT, TP_WAIT_RESULT)
    {
        auto& watch = *static_cast<Watch*>(context);
        DWORD exitCode = 0;
        GetExitCodeProcess(watch.m_process.Get(), &exitCode);
        watch.m_ended(watch.m_id, exitCode);
        watch.m_isOver = true;
    }

    Handle m_process;
    unsigned long m_id;
    Ended const& m_ended;
    PTP_WAIT m_wait;
    std::atomic<bool> m_isOver = false;
};

WindowsProcessStarter::WindowsProcessStarter() : m_job(MakeJob())
{
    // Inherited by what is started: a crash ends the process at once instead of asking a debugger or a person.
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
}

WindowsProcessStarter::~WindowsProcessStarter() = default;

StartedProcess WindowsProcessStarter::Start(ProcessRequest const& request)
{
    auto commandLine = request.commandLine; // CreateProcess writes into it
    auto environment = EnvironmentBlock(request);
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION started{};
    // Detached: it does not share the console that the broker was started from.
    if (!CreateProcessW(request.executable.c_str(), commandLine.data(), nullptr, nullptr, FALSE,
                        CREATE_UNICODE_ENVIRONMENT | DETACHED_PROCESS, environment.data(), request.folder.c_str(),
                        &startup, &started))
    {
        return {GetLastError(), 0};
    }
    Handle const thread(started.hThread);
    auto watch = std::make_unique<Watch>(Handle(started.hProcess), started.dwProcessId, m_ended);
    watch->Begin();
    std::lock_guard const lock(m_mutex);
    m_watches.remove_if([](auto const& other) { return other->IsOver(); });
    m_watches.push_back(std::move(watch));
    return {0, started.dwProcessId};
}

void WindowsProcessStarter::Kill(unsigned long id, unsigned long exitCode)
{
    std::lock_guard const lock(m_mutex);
    if (auto* const process = Running(id))
    {
        TerminateProcess(process, exitCode);
    }
}

bool WindowsProcessStarter::Suspend(unsigned long id)
{
    std::lock_guard const lock(m_mutex);
    auto* const process = Running(id);
    if (!process)
    {
        return false;
    }
    AssignProcessToJobObject(m_job.Get(), process); // fails for one that is there already
    return NtSuspendProcess(process) >= 0;
}

void WindowsProcessStarter::Resume(unsigned long id)
{
    std::lock_guard const lock(m_mutex);
    if (auto* const process = Running(id))
    {
        NtResumeProcess(process);
    }
}

HANDLE WindowsProcessStarter::Running(unsigned long id) const
{
    auto const found = std::ranges::find_if(m_watches, [&](auto const& watch) { return watch->Runs(id); });
    return found == m_watches.end() ? nullptr : (*found)->Process();
}

} // namespace sim
