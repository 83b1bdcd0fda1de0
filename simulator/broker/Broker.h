#pragma once
#include "simulator/broker/AppHost.h"
#include "simulator/broker/DesktopLauncher.h"
#include "simulator/model/FaultTable.h"
#include "simulator/services/Services.h"

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace sim
{

// The platform of one device: what Windows' own services are to packaged apps. It speaks in messages with whoever is
// connected, through Peer, and knows nothing of pipes.
//
// From the command line (each is answered with "ok" and lines to show, or "error" and a sentence):
//   register FOLDER · unregister · launch [ARGUMENTS] · protocol URI · suspend · kill · status ·
//   push [PAYLOAD] · clock [+TIME] · revoke-channel · cancel-tasks REASON · tasks ·
//   fault CALL KIND … · fault clear · process (the broker's own id, to wait for its end)
// and without an answer:
//   follow                        "event LINE" for all events so far and to come
//   stop                          the device is switched off
// From the app's process:
//   hello-app PID                 answered with the faults, then "welcome FAMILY FOLDER"; or with "refused"
//   taken ID                      it now gets this activation
//   launch-desktop REQUEST APPLICATION [GROUP]    answered with "launched REQUEST RESULT"
//   exiting · fault-used CALL · report KIND [NAME=VALUE…]
// To the app's process, beside the answers:
//   faults-clear · fault CALL KIND … · activate ID KIND ARGUMENT [MORE…]
// From any process, the app's and desktop programs, what it says to the services (see Services, which also says what
// they say of their own):
//   ask ID VERB …                 answered with "answer ID VERB …"
//   tell VERB …
class Broker
{
  public:
    // stop: called when the device is to be switched off; it must not call back.
    Broker(Device const& device, std::unique_ptr<ProcessStarter> processes, std::function<void()> stop,
           Limits limits = {});

    // From any thread; messages of one peer in its order.
    void Received(std::shared_ptr<Peer> const& from, Message const& message);

    // After the peer's last message.
    void Closed(std::shared_ptr<Peer> const& from);

    // Ends everything that was started. For the end of the device.
    void EndProcesses();

  private:
    using Words = std::vector<std::wstring>;

    Outside OutsideOfServices();
    void Activate(ActivationKind kind, Words more);
    void Lost(Activation const& activation);

    // What processes say (Broker.cpp).
    bool ReceivedForServices(std::shared_ptr<Peer> const& from, Message const& message);
    bool ReceivedFromApp(std::shared_ptr<Peer> const& from, std::wstring const& verb, Words const& words);
    void WelcomeApp(std::shared_ptr<Peer> const& from, Words const& words);
    void Taken(std::shared_ptr<Peer> const& from, std::wstring const& activationId);
    void LaunchDesktop(Peer& from, Words const& words);
    void Follow(std::shared_ptr<Peer> const& from);

    // What the command line says (BrokerCommands.cpp).
    std::wstring Answer(std::wstring const& verb, Words const& words);
    std::wstring Register(Words const& words);
    std::wstring Unregister(Words const& words);
    std::wstring Launch(Words const& words);
    std::wstring Protocol(Words const& words);
    std::wstring Suspend(Words const& words);
    std::wstring MakePage(Words const& words);
    std::wstring Kill(Words const& words);
    std::wstring Push(Words const& words);
    std::wstring Clock(Words const& words);
    std::wstring RevokeChannel(Words const& words);
    std::wstring CancelTasks(Words const& words);
    std::wstring Tasks(Words const& words);
    std::wstring ProcessId(Words const& words);
    std::wstring SetFault(Words const& words);
    std::wstring Status(Words const& words);
    void NeedApp() const;

    void LoadRegistration();
    Package const& NeedPackage() const;
    void NeedNoApp() const;

    Device const m_device;
    mutable std::mutex m_mutex; // over all that follows
    Journal m_journal;
    std::optional<Package> m_package;
    FaultTable m_faults;
    std::vector<std::shared_ptr<Peer>> m_followers;
    std::function<void()> m_stop;
    AppHost m_app;
    DesktopLauncher m_desktop;
    Services m_services;                         // it reaches for the others until it goes
    std::unique_ptr<ProcessStarter> m_processes; // last, so that it goes first: then nothing calls the others any more
};

} // namespace sim
