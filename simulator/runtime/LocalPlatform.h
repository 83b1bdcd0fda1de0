#pragma once
#include "simulator/model/Device.h"
#include "simulator/runtime/Deliveries.h"
#include "simulator/runtime/PoolWork.h"
#include "simulator/services/Services.h"

#include <functional>
#include <memory>
#include <mutex>

namespace sim
{

// The platform's services for one process that is both the app's and its callers', on a device of its own: a temporary
// folder, which goes with it. Any thread.
class LocalPlatform
{
  public:
    static constexpr wchar_t appServiceName[] = L"com.velmo.notification";
    static constexpr wchar_t familyName[] = L"Velmo.LocalHost_0123456789abc";

    // What it asks of the app's side; called with its mutex held.
    struct App
    {
        std::function<void(ActivationKind, std::vector<std::wstring> more)> activate;
        std::function<void()> end;
        std::function<void(std::wstring kind, std::vector<std::wstring> details)> report;
    };

    LocalPlatform(App app, Limits limits);
    LocalPlatform(LocalPlatform const&) = delete;
    LocalPlatform& operator=(LocalPlatform const&) = delete;
    ~LocalPlatform();

    // As Host has them.
    Message Ask(Message const& request);
    void AskLater(Message const& request, std::function<void(Message)> answered);
    void Tell(Message const& words);
    void Listen(std::function<void(Message const&)> listener) { m_deliveries.Listen(std::move(listener)); }

    std::wstring DataFolder() const { return m_device.PackageDataFolder(familyName); }

    // Says something to the process that the services did not.
    void Say(Message message) { m_deliveries.Add(std::move(message)); }

    // The app has taken the activation of this instance.
    void Taken(std::wstring const& instance);

    // The app's process has gone, or its callers'. Once gone, the app does not come back; callers do.
    void AppGone();
    void CallerGone();

    // Waits until all is answered and delivered, and all that came of it in answers and deliveries has returned.
    void WaitUntilQuiet() { m_work.Wait(); }

    // Calls a function with the services.
    template <typename Function>
    auto WithServices(Function const& function)
    {
        std::lock_guard const lock(m_mutex);
        return function(*m_services);
    }

  private:
    void AskNow(Message const& request, Services::Answer const& answer);
    std::shared_ptr<Peer> MakePeer();
    std::shared_ptr<Peer> SenderOf(Message const& message) const; // with the lock held

    Device m_device;
    PoolWork m_work;
    Deliveries m_deliveries{m_work};
    std::mutex m_mutex; // over all that follows
    std::shared_ptr<Peer> m_app = MakePeer();
    std::shared_ptr<Peer> m_caller = MakePeer();
    std::unique_ptr<Services> m_services;
};

} // namespace sim
