#pragma once
#include "simulator/broker/ProcessStarter.h"
#include "simulator/model/Activation.h"
#include "simulator/model/Device.h"
#include "simulator/model/Journal.h"
#include "simulator/model/Package.h"
#include "simulator/transport/Peer.h"

#include <deque>
#include <memory>
#include <mutex>
#include <optional>

namespace sim
{

// The app's one process: started when there is an activation for it, given the activations in order, told apart when it
// ends into one that announced its exit and one that crashed.
//
// An activation stays here until the process says that it takes it. One that comes while the process ends waits for the
// next process. A process that ends before it took any activation is not started again for those it was to get: they
// are lost, or a broken app would be started for ever.
class AppHost
{
  public:
    // mutex: the broker's. All members are called with it held; here it is taken when a process ends.
    AppHost(Device const& device, Journal& journal, ProcessStarter& processes, std::mutex& mutex);

    // Throws Error when the process does not start.
    void Activate(Package const& package, ActivationKind kind, std::wstring argument);

    // Whether this is the process that was started and has not connected yet.
    bool IsExpected(unsigned long processId) const noexcept;

    // The expected process has connected.
    void Attach(std::shared_ptr<Peer> peer);

    void Taken(Peer const& from, std::wstring const& activationId);
    void ExitAnnounced(Peer const& from);
    void PeerClosed(Peer const& from);

    // To the app's process, if there is one that listens.
    void Send(Message const& message);

    bool IsPeer(Peer const& peer) const noexcept;
    bool IsRunning() const noexcept;
    void Kill();

    // For people: whether it runs, and what waits.
    std::wstring Status() const;

  private:
    struct Process
    {
        Process(Package const& itsPackage, unsigned long itsId) : package(itsPackage), id(itsId) {}

        Package package;
        unsigned long id;
        bool hasConnected = false;
        std::shared_ptr<Peer> peer; // while its connection is open
        bool tookActivation = false;
        bool announcedExit = false;
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
    std::optional<Process> m_process;
    std::deque<Waiting> m_waiting;
    unsigned m_lastActivation = 0;
};

} // namespace sim
