#pragma once
#include "simulator/platform/AppLifetime.h"
#include "simulator/platform/AppProcess.h"
#include "simulator/platform/AppServices.h"
#include "simulator/platform/BackgroundTasks.h"
#include "simulator/platform/Clock.h"
#include "simulator/platform/DesktopComponent.h"
#include "simulator/platform/Dispatcher.h"
#include "simulator/platform/Journal.h"
#include "simulator/platform/PushChannel.h"
#include "simulator/platform/Registration.h"
#include "simulator/platform/TaskInstances.h"
#include "simulator/protocol/Device.h"
#include "simulator/protocol/FaultTable.h"
#include "simulator/protocol/Messages.h"
#include "simulator/protocol/Peer.h"

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace sim
{

// The platform of one device: what the services of Windows are to packaged apps. Its host passes on the messages of
// processes (simulator/protocol/Messages.h), starts processes for it, and runs its dispatcher, which runs all its work.
class Platform
{
  public:
    enum class JournalFile
    {
        Kept,
        None // followers alone get events
    };

    // switchOff: called on the dispatcher when the device is to be switched off. time: outlives this. Throws Error when
    // the journal cannot be opened.
    Platform(Device const& device, TimeSource const& time, std::unique_ptr<ProcessStarter> processes,
             std::function<void()> switchOff, Limits const& limits = {}, JournalFile journalFile = JournalFile::Kept);
    Platform(Platform const&) = delete;
    Platform& operator=(Platform const&) = delete;
    ~Platform() = default;

    // Any thread; the messages of a process in the order in which it sent them.
    void Received(std::shared_ptr<Peer> from, FromProcess message);

    // The connection has closed, after its last message. Any thread.
    void Closed(std::shared_ptr<Peer> from);

    sim::Dispatcher& Dispatcher() noexcept { return m_dispatcher; }

    // --- all that follows: called from the dispatcher's work ---

    // For a device whose package is in no folder and whose app process is the caller's own.
    void Register(Package package);
    void ExpectApp(unsigned long processId);
    void ProcessEnded(unsigned long id, unsigned long exitCode);

    // Start and cancellation of an instance without a registration or a caller.
    std::optional<std::uint32_t> StartInstance(TaskInstances::Content content);
    void CancelInstance(std::uint32_t instance, std::uint32_t reason);

    // Opens a channel with a URI of the caller's choice.
    void ReplaceChannel(std::wstring uri);

    // The names of the registered background tasks, whether the app runs or not.
    std::vector<std::wstring> TaskNames() const;

    // The device is switched off: terminates all processes. The successor of a platform that was killed instead
    // restores its faults and continues its numbers.
    void SwitchOff();

  private:
    using From = std::shared_ptr<Peer>;

    // Messages of processes.
    void Handle(From const& from, Hello const& message);
    void Handle(From const& from, ActivationTaken const& message);
    void Handle(From const& from, sim::ExitAnnounced const& message);
    void Handle(From const& from, sim::SuspendingCompleted const& message);
    void Handle(From const& from, FaultTriggered const& message);
    void Handle(From const& from, Report const& message);
    void Handle(From const& from, TaskReturned const& message);
    void Handle(From const& from, TaskCompleted const& message);
    void Handle(From const& from, RequestCompleted const& message);
    void Handle(From const& from, RequestRefused const& message);
    void Handle(From const& from, ConnectionClosed const& message);
    void Handle(From const& from, Request const& message);
    void Handle(From const& from, Follow const& message);
    void Handle(From const& from, sim::SwitchOff const& message);

    // Their requests. An exception refuses the request.
    using AnyReply = std::function<void(AnyAnswer const&)>;
    static AnyReply ReplyTo(From const& from, std::uint32_t number);

    // Answered later.
    void Answer(From const& from, std::uint32_t number, OpenConnection const& request);
    void Answer(From const& from, std::uint32_t number, SendRequest const& request);
    void Answer(From const& from, std::uint32_t number, UpdatePackage const& request);

    // Answered at once.
    template <typename Request>
    void Answer(From const& from, std::uint32_t number, Request const& request);
    ResponseTaken AnswerTo(Peer const& from, GiveResponse const& request);
    ChannelCreated AnswerTo(Peer const& from, CreateChannel const& request);
    TaskRegistered AnswerTo(Peer const& from, RegisterTask const& request);
    TaskList AnswerTo(Peer const& from, ListTasks const& request);
    TaskUnregistered AnswerTo(Peer const& from, UnregisterTask const& request);
    DesktopLaunched AnswerTo(Peer const& from, LaunchDesktop const& request);

    // What the command line asks (Servicing.cpp, Commands.cpp).
    Shown AnswerTo(Peer const& from, RegisterPackage const& request);
    Shown AnswerTo(Peer const& from, UnregisterPackage const& request);
    Shown AnswerTo(Peer const& from, LaunchApp const& request);
    Shown AnswerTo(Peer const& from, OpenUri const& request);
    Shown AnswerTo(Peer const& from, SuspendApp const& request);
    Shown AnswerTo(Peer const& from, RequestPage const& request);
    Shown AnswerTo(Peer const& from, KillApp const& request);
    Shown AnswerTo(Peer const& from, Push const& request);
    Shown AnswerTo(Peer const& from, SetCondition const& request);
    Shown AnswerTo(Peer const& from, AdvanceClock const& request);
    Shown AnswerTo(Peer const& from, RevokeChannel const& request);
    Shown AnswerTo(Peer const& from, CancelTasks const& request);
    Shown AnswerTo(Peer const& from, ShowTasks const& request);
    Shown AnswerTo(Peer const& from, SetFault const& request);
    Shown AnswerTo(Peer const& from, ClearFaults const& request);
    Shown AnswerTo(Peer const& from, ShowStatus const& request);
    Shown AnswerTo(Peer const& from, ShowProcess const& request);
    DeviceState AnswerTo(Peer const& from, DescribeDevice const& request);
    Shown Activate(Activation::Content content);
    Package OpenFor(std::wstring const& folder, bool isForced) const;
    void LoadState();

    struct Update
    {
        Package package;
        AnyReply reply;
    };

    // Ends or suspends the app for an update, a logoff or sleep, after its running tasks have ended.
    void StopAppFor(std::uint32_t reason);
    void ContinueStop();
    void Finish(Update& update); // the new version is registered

    void RequireApp() const;
    void RequireNoApp() const;

    // The session: what is in force until the device is switched off.
    void RestoreSession();
    void SaveSession();

    // Notes a failure that is reported to no process.
    void NoteFailure(std::wstring const& reason);

    // Consequences of an end.
    void ConnectionEnded(From const& from);
    void Lost(AppProcess::Activations const& activations);
    void Ended(TaskInstances::Ended const& instance);

    Device const m_device;
    sim::Dispatcher m_dispatcher;
    Journal m_journal;
    StateFile m_session;
    std::optional<Moment> m_sessionStart; // nullopt after the session
    Clock m_clock;
    Registration m_registration;
    FaultTable m_faults;
    std::vector<From> m_followers;
    std::function<void()> m_switchOff;
    std::unique_ptr<ProcessStarter> m_processes;
    AppProcess m_app;
    DesktopComponent m_desktop;
    PushChannel m_channel;
    TaskInstances m_instances;
    AppLifetime m_lifetime;
    AppServices m_services;
    BackgroundTasks m_tasks;
    std::optional<Update> m_update; // set while it waits for the app's end
};

} // namespace sim
