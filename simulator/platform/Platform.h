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

// The platform of one device: what Windows' own services are to packaged apps. Its host brings it what
// processes say (simulator/protocol/Messages.h), starts processes for it, and runs its dispatcher, where everything
// happens.
class Platform
{
  public:
    enum class JournalFile
    {
        Kept,
        None // events are for followers alone
    };

    // switchOff: called on the dispatcher when the device is to be switched off. time: outlives this.
    // Throws Error when the journal cannot be written.
    Platform(Device const& device, TimeSource const& time, std::unique_ptr<ProcessStarter> processes,
             std::function<void()> switchOff, Limits const& limits = {}, JournalFile journalFile = JournalFile::Kept);
    Platform(Platform const&) = delete;
    Platform& operator=(Platform const&) = delete;
    ~Platform() = default;

    // From any thread; messages of one process in its order.
    void Received(std::shared_ptr<Peer> from, FromProcess message);

    // After the process's last message: its connection has closed. From any thread.
    void Closed(std::shared_ptr<Peer> from);

    Dispatcher& Work() noexcept { return m_dispatcher; }

    // --- the rest on the dispatcher only ---

    // For a device whose package lies in no folder and whose app process is the caller's own.
    void Register(Package package);
    void ExpectApp(unsigned long processId);
    void ProcessEnded(unsigned long id, unsigned long exitCode);

    // What an activation that no registration or no caller is behind does.
    std::optional<std::uint32_t> StartInstance(TaskInstances::Content content);
    void CancelInstance(std::uint32_t instance, std::uint32_t reason);

    // Opens a channel with a URI of the caller's choice.
    void ReplaceChannel(std::wstring uri);

    // Of the registered background tasks, whether the app runs or not.
    std::vector<std::wstring> TaskNames() const;

    // Ends everything that was started: the device is switched off. A platform that is not told so was killed; the next
    // one takes over its faults, and its numbers go on.
    void SwitchOff();

  private:
    using From = std::shared_ptr<Peer>;

    // What processes say.
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

    // What they ask. What is thrown refuses it.
    using AnyReply = std::function<void(AnyAnswer const&)>;
    static AnyReply ReplyTo(From const& from, std::uint32_t number);

    // Answers that come later.
    void Answer(From const& from, std::uint32_t number, OpenConnection const& request);
    void Answer(From const& from, std::uint32_t number, SendRequest const& request);
    void Answer(From const& from, std::uint32_t number, UpdatePackage const& request);

    // Answers at once.
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
    Shown Activate(Activation::Content content);
    Package OpenFor(std::wstring const& folder, bool isForced) const;
    void LoadState();

    struct Update
    {
        Package package;
        AnyReply reply;
    };

    // What the app has to end or stop for, and its running tasks to end first: an update, a logoff, sleep.
    void StopAppFor(std::uint32_t reason);
    void ContinueStop();
    void Finish(Update& update); // the new version is registered

    void NeedApp() const;
    void NeedNoApp() const;

    // What is in force until the device is switched off.
    void TakeSessionOver();
    void KeepSession();

    // Something has failed that no process hears of.
    void NoteFailure(std::wstring const& reason);

    // What follows from an end.
    void ConnectionEnded(From const& from);
    void Lost(AppProcess::Activations const& activations);
    void Ended(TaskInstances::Ended const& instance);

    Device const m_device;
    Dispatcher m_dispatcher;
    Journal m_journal;
    StateFile m_session;
    std::optional<Moment> m_sessionStart; // none once it is over
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
    std::optional<Update> m_update; // while it waits for the app's end
};

} // namespace sim
