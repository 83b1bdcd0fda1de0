#pragma once
#include "simulator/platform/Platform.h"
#include "simulator/runtime/Host.h"
#include "simulator/testing/DeferralLog.h"

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>

namespace sim
{

// The host of a simulated process: threads of the test that exchange messages with the platform in memory. Messages to
// a device that no longer exists are lost, as between processes: objects of the app may outlive it.
class LocalProcess : public Host
{
  public:
    // A launch of the desktop component that the app has requested, with the platform's answer, which the app has not
    // received yet.
    struct Launched
    {
        std::wstring application;
        std::optional<std::wstring> group;
        std::shared_ptr<LocalProcess> process;
        Answer answer;

        // Called at most once. result: replaces the platform's success. Runs the app's continuations on a thread of the
        // multi-threaded apartment and waits for them. Until it is called the operation does not complete.
        void Complete(std::int32_t result = 0) const;
    };

    // platform: there until Detach.
    LocalProcess(Device const& device, Platform& platform);

    // From now on what is sent is lost.
    void Detach();

    // Connects as the process with that id.
    void Start(std::uint32_t id);

    // Closes its connection; it still receives answers.
    void CloseConnection();

    // The calls of this thread never fail from now on.
    void ExemptThisThread();

    // Called before each call that can be made to fail, on its thread, but for those of exempt threads; the fault that
    // it gives takes precedence over those that are set. Empty for none.
    using CallWatch = std::function<std::optional<Fault>(std::wstring_view call)>;
    void WatchCalls(CallWatch watch);

    void SetWindowContent(IInspectable content);
    void SetPackageFolder(std::wstring folder);

    Launched WaitForLaunch();
    std::size_t UnfetchedLaunches() const;
    std::optional<std::int32_t> Failure() const;
    DeferralLog const& Deferrals() const noexcept { return m_deferrals; }

    void WaitForWork() { Work().Wait(); }

    std::optional<Fault> TakeFault(std::wstring_view call) override;
    std::wstring PackageFolder() const override;
    void Fail(std::int32_t result) override;
    IInspectable WindowContent() override;
    void DeferralTaken(std::uint32_t request) override { m_deferrals.Taken(request); }
    void DeferralCompleted(std::uint32_t request) override { m_deferrals.Completed(request); }

  protected:
    void AppEnded() override;

  private:
    class Link;

    void NewPeer(std::uint32_t id);
    void Sent(FromProcess const& message);
    void Arrived(ToProcess const& message);

    DeferralLog m_deferrals;
    mutable std::mutex m_mutex; // over all that follows
    Platform* m_platform;       // null: the device is gone
    std::condition_variable m_launchCame;
    std::shared_ptr<Peer> m_peer;
    std::uint32_t m_id = 0;
    std::map<std::uint32_t, LaunchDesktop> m_launches; // requested, by the number of the request
    std::deque<Launched> m_launched;
    std::set<unsigned long> m_exemptThreads;
    CallWatch m_callWatch;
    IInspectable m_windowContent;
    std::wstring m_packageFolder;
    std::optional<std::int32_t> m_failure;
};

} // namespace sim
