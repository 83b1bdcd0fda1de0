#pragma once
#include "simulator/model/Event.h"
#include "simulator/model/FaultTable.h"
#include "simulator/runtime/ActivationQueue.h"
#include "simulator/runtime/DeferralCounts.h"
#include "simulator/runtime/Host.h"
#include "simulator/runtime/LocalPlatform.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <set>

namespace sim
{

// The platform for tests in one process: while it lives, the program's runtime classes are the simulator's, and the
// test is the world outside.
//
//   sim::LocalHost host;
//   host.SetFault(L"CoreApplication.Exit now 0x80004005 1");            // as on the simulator's command line
//   std::thread app([] { Application::Start([](auto&&) { winrt::make<App>(); }); });
//   host.Activate(sim::ActivationKind::Launch);
//   auto launch = host.WaitForLaunch();                                 // launch.group is L"LaunchHOV"
//   launch.Complete();                                                  // what waited for it has run when it returns
//   app.join();                                                         // Start has returned: the app has ended
//
// The test may also be the app's caller: it opens an AppServiceConnection of its own to LocalPlatform::appServiceName
// of LocalPlatform::familyName, which activates the app.
//
// An app that does not end by itself is ended by End. Where a real process would end at once since an override failed,
// here Start returns and Failure tells. All members may be called from any thread. A wait for what does not come within
// 30 s throws std::runtime_error, which says what was missing.
class LocalHost : public Host
{
  public:
    // A launch of the desktop component that the app has asked for.
    struct Launch
    {
        std::wstring application;
        std::optional<std::wstring> group;
        Launched launched;

        // Once. Runs the app's continuations on a thread of the multi-threaded apartment and waits for them. Not called
        // at all, the operation never ends.
        void Complete(std::int32_t result = 0) const;
    };

    explicit LocalHost(Limits limits = {});
    LocalHost(LocalHost const&) = delete;
    LocalHost& operator=(LocalHost const&) = delete;
    ~LocalHost() override;

    // CALL KIND [NUMBER] [TIMES] [after CALLS]. Throws Error when it makes no sense. A fault of a whole class strikes
    // its next use, also when the class was used before: nobody must be using classes meanwhile.
    void SetFault(std::wstring_view words);
    void ClearFaults();

    // No fault strikes what this thread calls from now on: it is the world outside, not the app.
    void SpareThisThread();

    // Before Start, too.
    void Activate(ActivationKind kind, std::wstring argument = {});

    // A background task of that name, which no registration and no trigger is behind; its instance. trigger: push or
    // timer. It runs without a limit; its end is reported as task-completed.
    std::wstring ActivateTask(std::wstring name, std::wstring trigger = L"timer", std::wstring payload = {});

    // The app service for a connection that nobody has opened: what is sent on it fails. Its instance.
    std::wstring ActivateAppService();

    // Cancels one of those instances, whose activation has reached the app.
    void Cancel(std::wstring const& instance, int reason);

    // The push service, the clock in minutes, the user and the system.
    void Push(std::wstring const& payload);
    void AdvanceClock(std::int64_t minutes);
    void RevokeChannel();
    void ReplaceChannel(std::wstring uri);
    void CancelTasks(int reason);

    // The process that the test's connections are of has been killed; what it opens from now on is another one's.
    void KillCaller();

    // Waits until all that was asked for is answered, all that the platform had to say is delivered, and all that came
    // of either, up to where it waited for something else, has returned.
    void WaitUntilQuiet();

    // How often the deferrals of each request to the app were completed, in the order in which the requests came.
    std::vector<unsigned> Completions() const;

    // Waits until that request, counted from 0, was completed so often.
    void WaitForCompletions(std::size_t request, unsigned count) const;

    // What the app's window holds when it is made; nothing unless set. Before the first foreground activation.
    void SetWindowContent(IInspectable content);

    // Where the app's package lies: its manifest and its markup. Nowhere unless set: the app has no package.
    void SetPackageFolder(std::wstring folder);

    // Ends the app from outside, once its thread is free.
    void End();

    // The next launch in order; waits for it.
    Launch WaitForLaunch();

    // How many were asked for and not fetched with WaitForLaunch.
    std::size_t UnfetchedLaunches() const;

    // Whether the app asked for its end (CoreApplication.Exit).
    bool HasExited() const;

    // The result code of the override that failed.
    std::optional<std::int32_t> Failure() const;

    // What happened on the device, as in its journal, and what the runtime classes had to report, such as start-failed
    // and unhandled-exception.
    std::vector<Event> Reports() const;

    // Waits for a report of that kind; the n-th of them, counted from 1.
    Event WaitForReport(std::wstring_view kind, std::size_t number = 1) const;

    std::optional<Activation> NextActivation() override;
    void Exit() override;
    void Fail(std::int32_t result) override;
    std::optional<Fault> TakeFault(std::wstring_view call) override;
    void LaunchDesktop(std::wstring const& application, std::optional<std::wstring> const& group,
                       Launched launched) override;
    IInspectable WindowContent() override;
    void Report(std::wstring kind, std::vector<std::wstring> details) override;
    Message Ask(Message const& request) override;
    void AskLater(Message const& request, std::function<void(Message)> answered) override;
    void Tell(Message const& words) override;
    void Listen(std::function<void(Message const&)> listener) override;
    std::wstring DataFolder() override;
    std::wstring PackageFolder() override;
    void DeferralTaken(std::wstring const& request) override;
    void DeferralCompleted(std::wstring const& request) override;

  private:
    std::wstring NextInstance();

    ActivationQueue m_activations;
    DeferralCounts m_deferrals;
    mutable std::mutex m_mutex; // over all that follows but the platform
    std::condition_variable m_launchCame;
    mutable std::condition_variable m_reported;
    std::deque<Launch> m_launches;
    FaultTable m_faults;
    IInspectable m_windowContent;
    std::wstring m_packageFolder;
    std::vector<Event> m_reports;
    std::optional<std::int32_t> m_failure;
    bool m_hasExited = false;
    std::set<unsigned long> m_sparedThreads;
    unsigned m_lastInstance = 0;
    std::unique_ptr<LocalPlatform> m_platform; // last: it goes first
};

} // namespace sim
