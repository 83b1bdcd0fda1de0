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

// The app's one process: started when there is an activation for it, given the activations in order, told apart when it
// ends into one that announced its exit, one that the platform ended and one that crashed.
//
// An activation stays here until the process says that it takes it. One that comes while the process ends waits for the
// next process. A process that ends before it took any activation is not started again for those it was to get: they
// are lost, or a broken app would be started again and again.
class AppProcess
{
  public:
    using Activations = std::vector<Activation>;

    AppProcess(Device const& device, Registration const& registration, Journal& journal, ProcessStarter& processes);

    // Throws Error when no package is registered or its process does not start; then the activation is lost.
    void Activate(Activation::Content content);

    // While the package is updated, or the device sleeps or has no user, activations wait. Release gives those that are
    // lost as the process does not start.
    void Hold() { m_isHeld = true; }
    bool IsHeld() const noexcept { return m_isHeld; }
    Activations Release();

    // A process of that id, which was not started here, will connect as the app's.
    void Expect(unsigned long processId);

    // Whether this is the process that was started and has not connected yet.
    bool IsExpected(unsigned long processId) const noexcept;

    // The expected process has connected.
    void Attach(std::shared_ptr<Peer> peer);

    // Gives the activation; nullopt for one that the process was not to take.
    std::optional<Activation> Taken(Peer const& from, std::uint32_t activation);
    void ExitAnnounced(Peer const& from);

    // Its connection has closed; the process has ended. When both have come, what no process will take is lost, and is
    // given.
    Activations ConnectionClosed(Peer const& from);
    Activations ProcessEnded(unsigned long id, unsigned long exitCode);

    // To the app's process, if there is one that listens.
    void Send(ToProcess const& message);

    bool IsPeer(Peer const& peer) const noexcept;
    bool IsRunning() const noexcept;

    // Whether it runs, had nothing to do in the foreground and has not, and is not about to end.
    bool RunsInBackgroundOnly() const noexcept;

    // Whether it runs, is not about to end, and all that was for it is taken.
    bool HasTakenAll() const noexcept;

    // Stops its threads until there is an activation for it; or until Release, unless it is in the background, and
    // idle.
    void Suspend();
    bool IsSuspended() const noexcept { return m_process && m_process->isSuspended; }

    // Ends it from outside, as Task Manager does.
    void Kill();

    // Ends it as the platform does: not a crash. It gets nothing more.
    void Terminate();

    // For people: whether it runs, and what waits.
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

    bool IsActive() const noexcept; // connected, not about to end, and nothing is held
    void Start();
    void Resume();
    void SendWaiting();
    void Report(Activation const& activation);
    Activations FinishIfOver();
    void ReportEnd(Process const& process);
    Activations StartForWaiting();
    Activations LoseWaiting();

    Device const& m_device;
    Registration const& m_registration;
    Journal& m_journal;
    ProcessStarter& m_processes;
    std::optional<Process> m_process; // none: not running
    std::deque<Waiting> m_waiting;
    bool m_isHeld = false;
    std::uint32_t m_lastActivation = 0;
};

} // namespace sim
