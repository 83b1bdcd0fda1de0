#include "simulator/broker/WindowsProcessStarter.h"

#include "simulator/base/Error.h"
#include "simulator/base/Files.h"

#include <algorithm>
#include <atomic>
#include <windows.h>

#include <winternl.h>

// They suspend and resume a whole process; the documented functions only a thread.
extern "C" NTSTATUS NTAPI NtSuspendProcess(HANDLE process);
extern "C" NTSTATUS NTAPI NtResumeProcess(HANDLE process);

namespace sim
{

namespace
{

// A job whose processes end with its last handle. Throws Error.
Handle MakeJob()
{
    Handle job(CreateJobObjectW(nullptr, nullptr));
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    if (!job || !SetInformationJobObject(job.Get(), JobObjectExtendedLimitInformation, &limits, sizeof limits))
    {
        throw Error(L"cannot create a job object for suspended processes: " + SystemMessage(GetLastError()));
    }
    return job;
}

} // namespace

// Waits for the end of a process.
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

    // Assigns the process to the job; false on failure. A process joins a job once.
    bool Join(HANDLE job)
    {
        m_isInJob = m_isInJob || AssignProcessToJobObject(job, m_process.Get()) != FALSE;
        return m_isInJob;
    }

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
    bool m_isInJob = false;
};

WindowsProcessStarter::WindowsProcessStarter() : m_job(MakeJob())
{
    // Child processes inherit it: a crash ends them at once, without a debugger or a message box.
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
}

WindowsProcessStarter::~WindowsProcessStarter() = default;

StartedProcess WindowsProcessStarter::Start(ProcessRequest const& request)
{
    auto process = StartProcess(request);
    if (!process)
    {
        return {GetLastError(), 0};
    }
    auto const id = GetProcessId(process.Get());
    auto watch = std::make_unique<Watch>(std::move(process), id, m_ended);
    watch->Begin();
    std::lock_guard const lock(m_mutex);
    m_watches.remove_if([](auto const& other) { return other->IsOver(); });
    m_watches.push_back(std::move(watch));
    return {0, id};
}

void WindowsProcessStarter::Kill(unsigned long id, unsigned long exitCode)
{
    std::lock_guard const lock(m_mutex);
    if (auto const* const watch = Running(id))
    {
        TerminateProcess(watch->Process(), exitCode);
    }
}

bool WindowsProcessStarter::Suspend(unsigned long id)
{
    std::lock_guard const lock(m_mutex);
    auto* const watch = Running(id);
    return watch != nullptr && watch->Join(m_job.Get()) && NtSuspendProcess(watch->Process()) >= 0;
}

void WindowsProcessStarter::Resume(unsigned long id)
{
    std::lock_guard const lock(m_mutex);
    if (auto const* const watch = Running(id))
    {
        NtResumeProcess(watch->Process());
    }
}

WindowsProcessStarter::Watch* WindowsProcessStarter::Running(unsigned long id) const
{
    auto const found = std::ranges::find_if(m_watches, [&](auto const& watch) { return watch->Runs(id); });
    return found == m_watches.end() ? nullptr : found->get();
}

} // namespace sim
