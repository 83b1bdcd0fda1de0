#pragma once
#include "simulator/platform/Platform.h"
#include "simulator/platform/SystemTime.h"
#include "simulator/runtime/CurrentHost.h"
#include "simulator/testing/LocalProcess.h"

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace sim
{

// A device within a test's process: the platform that also serves real processes, with messages passed in memory and
// threads in place of processes. While it exists, the program's runtime classes are the simulator's and belong to the
// app's process, which is connected; in a CallerScope they belong to a desktop program.
//
//   sim::LocalDevice device;
//   device.SetFault(L"CoreApplication.Exit now 0x80004005 1");          // as for sim fault
//   std::thread app([] { Application::Start([](auto&&) { winrt::make<App>(); }); });
//   device.Launch();
//   auto launch = device.WaitForLaunch();                               // launch.group is L"LaunchHOV"
//   launch.Complete();                                                  // its continuations have run when it returns
//   app.join();                                                         // Start has returned: the app has ended
//
// End ends an app that does not end by itself. Where a real process would end at once because an override failed, here
// Start returns and Failure has the HRESULT. All members may be called from any thread. The platform's
// limits are never reached. A wait throws std::runtime_error after 30 s, which says what is missing.
class LocalDevice
{
  public:
    static constexpr wchar_t appServiceName[] = L"com.velmo.notification";
    static constexpr wchar_t familyName[] = L"Velmo.LocalDevice_m7dy57p66fpam";

    using Launched = LocalProcess::Launched;

    LocalDevice();
    LocalDevice(LocalDevice const&) = delete;
    LocalDevice& operator=(LocalDevice const&) = delete;
    ~LocalDevice();

    // The existing one. There must be one.
    static LocalDevice& Current() noexcept;

    // CALL KIND [NUMBER] [TIMES] [after CALLS]. Throws Error for wrong words. A fault of a whole class applies to its
    // next use, also when the class was used before: no thread may use classes meanwhile.
    void SetFault(std::wstring_view words);
    void ClearFaults() { Command(sim::ClearFaults{}); }

    // The calls of this thread never fail from now on: it is not part of the app.
    void ExemptThisThread() { m_app->ExemptThisThread(); }

    // Hears of each call of the app that can be made to fail, and may make it fail.
    void WatchCalls(LocalProcess::CallWatch watch) { m_app->WatchCalls(std::move(watch)); }

    // Also before Start.
    void Launch(std::wstring arguments = {}) { Command(LaunchApp{std::move(arguments)}); }
    void OpenUri(std::wstring uri) { Command(sim::OpenUri{std::move(uri)}); }
    void Suspend() { Command(SuspendApp{}); }
    void RequestPage(std::wstring className) { Command(sim::RequestPage{std::move(className)}); }

    // Starts a background task of that name, without a registration; returns its instance.
    std::uint32_t ActivateTask(std::wstring name, Trigger trigger = Trigger::Timer, std::wstring payload = {});

    // Starts the app service for a connection that no caller has opened, on which sending fails; returns its instance.
    std::uint32_t ActivateAppService();

    // Cancels one of those instances.
    void Cancel(std::uint32_t instance, std::uint32_t reason)
    {
        OnPlatform([&] { m_platform.CancelInstance(instance, reason); });
    }

    // What the push service, the clock (in minutes), the user and the system do.
    void Push(std::wstring const& payload) { Command(sim::Push{payload}); }
    void AdvanceClock(std::int64_t minutes) { Command(sim::AdvanceClock{minutes}); }
    void RevokeChannel() { Command(sim::RevokeChannel{}); }
    void ReplaceChannel(std::wstring uri)
    {
        OnPlatform([&] { m_platform.ReplaceChannel(std::move(uri)); });
    }
    void CancelTasks(std::uint32_t reason) { Command(sim::CancelTasks{reason}); }

    // The app's data on the device.
    std::wstring DataFolder() const { return m_app->DataFolder(); }

    // The names of the registered tasks, in the order of registration.
    std::vector<std::wstring> TaskNames();

    // Kills the process of the callers; a new one takes its place.
    void KillCaller();

    // The process of the callers, which open app services.
    std::shared_ptr<LocalProcess> Caller() const;

    // Waits until all requests are answered, all messages of the platform are delivered, and all work that results has
    // returned or waits for something else.
    void WaitUntilQuiet();

    // Waits until the platform has nothing to do, whatever the processes still do; returns how much it was given so
    // far.
    std::uint64_t WaitForPlatform() { return m_platform.Dispatcher().WaitUntilIdle(); }

    // How often the deferrals of each request to the app were completed, in the order in which the requests came.
    std::vector<unsigned> Completions() const { return m_app->Deferrals().All(); }

    // The content that the app's window has when it is created; none by default. Called before the first foreground
    // activation.
    void SetWindowContent(IInspectable content) { m_app->SetWindowContent(std::move(content)); }

    // The folder of the app's package, with its manifest and markup. By default the app has no package.
    void SetPackageFolder(std::wstring folder) { m_app->SetPackageFolder(std::move(folder)); }

    // Ends the app once its UI thread is idle.
    void End() { m_app->End(); }

    // The next launch in order; waits for it.
    Launched WaitForLaunch() { return m_app->WaitForLaunch(); }

    // An event, signalled while the app's UI thread is at no activation.
    HANDLE UiThreadIdle() const noexcept { return m_app->UiThreadIdle(); }

    // The number of launches that WaitForLaunch has not returned yet.
    std::size_t UnfetchedLaunches();

    // Whether the app has called CoreApplication.Exit.
    bool HasExited();

    // The HRESULT of the override that failed.
    std::optional<std::int32_t> Failure() const { return m_app->Failure(); }

    // The device's events, as in its journal.
    std::vector<Event> Reports();

    // Waits for an event of that kind; the n-th of them, counted from 1.
    Event WaitForReport(std::wstring_view kind, std::size_t number = 1);

  private:
    class CommandLine;

    Shown Command(AnyRequest request);
    std::shared_ptr<LocalProcess> NewCaller();

    // Runs the work on the platform's thread and waits for it.
    void OnPlatform(Dispatcher::Work const& work) { m_platform.Dispatcher().PostAndWait(work); }

    std::uint32_t StartInstance(TaskInstances::Content content);

    Device m_device;
    SystemTime m_time;
    Platform m_platform;
    std::thread m_work;                         // runs the platform
    std::shared_ptr<CommandLine> m_commandLine; // receives the events, too
    std::shared_ptr<LocalProcess> m_app;
    mutable std::mutex m_mutex;                           // over the next
    std::vector<std::shared_ptr<LocalProcess>> m_callers; // all but the last one are killed
};

// In this scope the thread belongs to the callers' process.
class CallerScope
{
  public:
    CallerScope() : m_caller(LocalDevice::Current().Caller()), m_scope(*m_caller) {}

  private:
    std::shared_ptr<LocalProcess> m_caller;
    HostScope m_scope;
};

} // namespace sim
