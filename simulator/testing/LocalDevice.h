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

// A device within a test's process: the platform that serves real processes, spoken to through memory; "processes" are
// the threads of this one. While it lives, the program's runtime classes are the simulator's, those of the app's
// process, which is connected already; what a thread does in CallerScope belongs to a desktop program.
//
//   sim::LocalDevice device;
//   device.SetFault(L"CoreApplication.Exit now 0x80004005 1");          // as on the simulator's command line
//   std::thread app([] { Application::Start([](auto&&) { winrt::make<App>(); }); });
//   device.Launch();
//   auto launch = device.WaitForLaunch();                               // launch.group is L"LaunchHOV"
//   launch.Complete();                                                  // what waited for it has run when it returns
//   app.join();                                                         // Start has returned: the app has ended
//
// An app that does not end by itself is ended by End. Where a real process would end at once since an override failed,
// here Start returns and Failure tells. All members may be called from any thread. A wait for what does not come within
// 30 s throws std::runtime_error, which says what was missing.
class LocalDevice
{
  public:
    static constexpr wchar_t appServiceName[] = L"com.velmo.notification";
    static constexpr wchar_t familyName[] = L"Velmo.LocalDevice_m7dy57p66fpam";

    using Launched = LocalProcess::Launched;

    explicit LocalDevice(Limits const& limits = {});
    LocalDevice(LocalDevice const&) = delete;
    LocalDevice& operator=(LocalDevice const&) = delete;
    ~LocalDevice();

    // The one that lives. There must be one.
    static LocalDevice& Current() noexcept;

    // CALL KIND [NUMBER] [TIMES] [after CALLS]. Throws Error when it makes no sense. A fault of a whole class strikes
    // its next use, also when the class was used before: nobody must be using classes meanwhile.
    void SetFault(std::wstring_view words);
    void ClearFaults();

    // No fault strikes what this thread calls from now on: it is the world outside, not the app.
    void SpareThisThread();

    // Before Start, too.
    void Launch(std::wstring arguments = {});
    void OpenUri(std::wstring uri);
    void Suspend();
    void RequestPage(std::wstring className);

    // A background task of that name, which no registration is behind; its instance.
    std::uint32_t ActivateTask(std::wstring name, Trigger trigger = Trigger::Timer, std::wstring payload = {});

    // The app service for a connection that nobody has opened: what is sent on it fails. Its instance.
    std::uint32_t ActivateAppService();

    // Cancels one of those instances.
    void Cancel(std::uint32_t instance, std::uint32_t reason);

    // The push service, the clock in minutes, the user and the system.
    void Push(std::wstring const& payload);
    void AdvanceClock(std::int64_t minutes);
    void RevokeChannel();
    void ReplaceChannel(std::wstring uri);
    void CancelTasks(std::uint32_t reason);

    // The app's data on the device.
    std::wstring DataFolder() const { return m_app->DataFolder(); }

    // The names of the registered tasks, in the order of registration.
    std::vector<std::wstring> TaskNames();

    // The process of the callers is killed; what they open from now on is another one's.
    void KillCaller();

    // The process of the callers: of those that open app services.
    std::shared_ptr<LocalProcess> Caller() const;

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
    Launched WaitForLaunch();

    // How many were asked for and not fetched with WaitForLaunch.
    std::size_t UnfetchedLaunches();

    // Whether the app asked for its end (CoreApplication.Exit).
    bool HasExited();

    // The result code of the override that failed.
    std::optional<std::int32_t> Failure() const;

    // What happened on the device, as in its journal.
    std::vector<Event> Reports();

    // Waits for an event of that kind; the n-th of them, counted from 1.
    Event WaitForReport(std::wstring_view kind, std::size_t number = 1);

  private:
    class CommandLine;

    Shown Command(AnyRequest request);
    std::shared_ptr<LocalProcess> NewCaller();

    Device m_device;
    SystemTime m_time;
    Platform m_platform;
    std::thread m_work;                         // runs the platform
    std::shared_ptr<CommandLine> m_commandLine; // which follows the journal, too
    std::shared_ptr<LocalProcess> m_app;
    mutable std::mutex m_mutex;                           // over the next
    std::vector<std::shared_ptr<LocalProcess>> m_callers; // the last one has not been killed
};

// What this thread does meanwhile is done by the callers' process.
class CallerScope
{
  public:
    CallerScope() : m_caller(LocalDevice::Current().Caller()), m_scope(*m_caller) {}

  private:
    std::shared_ptr<LocalProcess> m_caller;
    HostScope m_scope;
};

} // namespace sim
