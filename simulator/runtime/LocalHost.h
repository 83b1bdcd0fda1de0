#pragma once
#include "simulator/model/Event.h"
#include "simulator/model/FaultTable.h"
#include "simulator/runtime/ActivationQueue.h"
#include "simulator/runtime/Host.h"

#include <condition_variable>
#include <deque>
#include <mutex>

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
// An app that does not end by itself is ended by End. Where a real process would end at once since an override failed,
// here Start returns and Failure tells. All members may be called from any thread.
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

    LocalHost();
    LocalHost(LocalHost const&) = delete;
    LocalHost& operator=(LocalHost const&) = delete;
    ~LocalHost() override;

    // CALL KIND [NUMBER] [TIMES]. Throws Error when it makes no sense.
    void SetFault(std::wstring_view words);

    // Before Start, too.
    void Activate(ActivationKind kind, std::wstring argument = {});

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

    // What the runtime classes had to report, such as start-failed and unhandled-exception.
    std::vector<Event> Reports() const;

    std::optional<Activation> NextActivation() override;
    void Exit() override;
    void Fail(std::int32_t result) override;
    std::optional<Fault> TakeFault(std::wstring_view call) override;
    void LaunchDesktop(std::wstring const& application, std::optional<std::wstring> const& group,
                       Launched launched) override;
    void Report(std::wstring kind, std::vector<std::wstring> details) override;

  private:
    ActivationQueue m_activations;
    mutable std::mutex m_mutex; // over all that follows
    std::condition_variable m_launchCame;
    std::deque<Launch> m_launches;
    FaultTable m_faults;
    std::vector<Event> m_reports;
    std::optional<std::int32_t> m_failure;
    bool m_hasExited = false;
};

} // namespace sim
