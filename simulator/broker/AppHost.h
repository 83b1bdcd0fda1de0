#pragma once
#include "simulator/broker/ProcessStarter.h"
#include "simulator/model/Activation.h"
#include "simulator/model/Device.h"
#include "simulator/model/Journal.h"
#include "simulator/model/Package.h"
#include "simulator/transport/Peer.h"

#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

namespace sim
{

// The app's one process: started when there is an activation for it, given the activations in order, told apart when it
// ends into one that announced its exit, one that the platform ended and one that crashed.
//
// An activation stays here until the process says that it takes it. One that comes while the process ends waits for the
// next process. A process that ends before it took any activation is not started again for those it was to get: they
// are lost, or a broken app would be started for ever.
class AppHost
{
  public:
    // Called, with the mutex held, for each activation that no process will take.
    using Lost = std::function<void(Activation const&)>;

    // mutex: the broker's. All members are called with it held; here it is taken when a process ends.
    AppHost(Device const& device, Journal& journal, ProcessStarter& processes, std::mutex& mutex, Lost lost);

    // more: of a background activation. Throws Error when the process does not start; then it has been lost.
    void Activate(Package const& package, ActivationKind kind, std::wstring argument,
                  std::vector<std::wstring> more = {});

    // Whether this is the process that was started and has not connected yet.
    bool IsExpected(unsigned long processId) const noexcept;

    // The expected process has connected.
    void Attach(std::shared_ptr<Peer> peer);

    // Gives the activation; nullopt for one that the process was not to take.
    std::optional<Activation> Taken(Peer const& from, std::wstring const& activationId);
    void ExitAnnounced(Peer const& from);
    void PeerClosed(Peer const& from);

    // To the app's process, if there is one that listens.
    void Send(Message const& message);

    bool IsPeer(Peer const& peer) const noexcept;
    bool IsRunning() const noexcept;

    // Whether it runs, had nothing to do in the foreground and has not, and is not about to end.
    bool RunsInBackgroundOnly() const noexcept;

    // Ends it from outside, as Task Manager does.
    void Kill();

    // Ends it as the platform does: not a crash. It gets nothing more.
    void Terminate();

    // For people: whether it runs, and what waits.
    std::wstring Status() const;

  private:
    struct Process
    {
        Process(Package itsPackage, unsigned long itsId) : package(std::move(itsPackage)), id(itsId) {}

        Package package;
        unsigned long id;
        bool hasConnected = false;
        std::shared_ptr<Peer> peer; // while its connection is open
        bool tookActivation = false;
        bool wasInForeground = false;
        bool announcedExit = false;
        bool isTerminated = false;             // by the platform
        std::optional<unsigned long> exitCode; // once it has ended
    };

    struct Waiting
    {
        Activation activation;
        bool isSent = false;
    };

    void Start(Package const& package);
    void SendWaiting();
    void ProcessEnded(unsigned long id, unsigned long exitCode);
    void FinishIfOver();
    void LoseWaiting();

    Device const& m_device;
    Journal& m_journal;
    ProcessStarter& m_processes;
    std::mutex& m_mutex;
    Lost m_lost;
    std::unique_ptr<Process> m_process; // null: not running
    std::deque<Waiting> m_waiting;
    unsigned m_lastActivation = 0;
};

} // namespace sim
