#pragma once
#include "simulator/platform/Journal.h"
#include "simulator/platform/ProcessStarter.h"
#include "simulator/platform/Registration.h"
#include "simulator/protocol/Device.h"
#include "simulator/protocol/Peer.h"

#include <deque>
#include <memory>
#include <optional>
#include <vector>

namespace sim
{

// The app's single process. An activation starts it; it receives its activations in order. Its end is an announced
// exit, a termination by the platform, or a crash.
//
// An activation is queued until the process takes it. An activation that arrives while the process ends is for the next
// process. When a process ends before it has taken any activation, the queued ones are lost: otherwise a broken app
// would be restarted without end.
class AppProcess
{
  public:
    using Activations = std::vector<Activation>;

    AppProcess(Device const& device, Registration const& registration, Journal& journal, ProcessStarter& processes);

    // Throws Error, and drops the activation, when no package is registered or its process does not start.
    void Activate(Activation::Content content);

    // Activations are held while the package is updated, the device sleeps or no user is logged on. Release returns
    // those that are lost because the process does not start.
    void Hold() { m_isHeld = true; }
    bool IsHeld() const noexcept { return m_isHeld; }
    Activations Release();

    // The process with that id, which was not started here, will connect as the app's.
    void Expect(unsigned long processId);

    // Whether the process with that id was started and has not connected yet.
    bool IsExpected(unsigned long processId) const noexcept;

    // The expected process has connected.
    void Attach(std::shared_ptr<Peer> peer);

    // Returns the activation; nullopt for one that was not sent to this process.
    std::optional<Activation> Taken(Peer const& from, std::uint32_t activation);
    void ExitAnnounced(Peer const& from);

    // The connection has closed; the process has ended. After both, these return the activations that are lost.
    Activations ConnectionClosed(Peer const& from);
    Activations ProcessEnded(unsigned long id, unsigned long exitCode);

    // Sends to the app's process if it is connected.
    void Send(ToProcess const& message);

    bool IsPeer(Peer const& peer) const noexcept;
    bool IsRunning() const noexcept;

    // Whether it runs, has never been in the foreground, is not suspended and is not about to end.
    bool RunsInBackgroundOnly() const noexcept;

    // Whether it runs, is not about to end, and has taken all activations.
    bool HasTakenAll() const noexcept;

    // Suspends its threads until the next activation; or until Release, unless the app is in the background and idle.
    void Suspend();
    bool IsSuspended() const noexcept { return m_process && m_process->isSuspended; }

    // Terminates it from outside, as Task Manager does.
    void Kill();

    // Terminates it as the platform does, which is not a crash. It receives nothing more.
    void Terminate();

    // Display text: whether it runs, and how many activations wait.
    std::wstring Status() const;

  private:
    struct Process
    {
        unsigned long id = 0;
        bool hasConnected = false;
        std::shared_ptr<Peer> peer = {}; // while its connection is open
        bool tookActivation = false;
        bool wasInForeground = false;
        bool announcedExit = false;
        bool isTerminated = false; // by the platform
        bool isSuspended = false;
        std::optional<unsigned long> exitCode = {}; // once it has ended
    };

    struct Waiting
    {
        Activation activation;
        bool isSent = false;
    };

    static bool IsSuspension(Waiting const& waiting) noexcept
    {
        return std::holds_alternative<Suspension>(waiting.activation.content);
    }

    bool IsActive() const noexcept; // connected, not about to end, and not held
    void Start();
    void Resume();
    void SendWaiting();
    void Report(Activation const& activation);
    Activations FinishIfEnded();
    void ReportEnd(Process const& process);
    Activations StartForWaiting();
    Activations DropWaiting();

    Device const& m_device;
    Registration const& m_registration;
    Journal& m_journal;
    ProcessStarter& m_processes;
    std::optional<Process> m_process; // nullopt: not running
    std::deque<Waiting> m_waiting;
    bool m_isHeld = false;
    std::uint32_t m_lastActivation = 0;
};

} // namespace sim
