#pragma once
#include "simulator/protocol/Activation.h"
#include "simulator/protocol/Device.h"
#include "simulator/protocol/FaultTable.h"
#include "simulator/protocol/Peer.h"
#include "simulator/protocol/Pipe.h"
#include "simulator/runtime/ActivationQueue.h"
#include "simulator/runtime/MessageRouter.h"
#include "simulator/runtime/Namespaces.h"
#include "simulator/runtime/PoolWork.h"

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>
#include <winrt/base.h>

namespace sim
{

// The runtime classes' side of the protocol, for one process, over any link.
// Any thread, unless said otherwise.
class Host : public std::enable_shared_from_this<Host>
{
  public:
    // answerLimit: in milliseconds, for what the platform answers at once.
    explicit Host(Device device, unsigned answerLimit = hungAfter)
        : m_device(std::move(device)), m_answerLimit(answerLimit)
    {
    }

    Host(Host const&) = delete;
    Host& operator=(Host const&) = delete;
    virtual ~Host() = default;

    // Says which process this is and waits for what the platform takes it for. Once. Throws hresult_error
    // APPMODEL_ERROR_NO_PACKAGE when the platform hangs up, ERROR_TIMEOUT when it hangs.
    void Connect(std::shared_ptr<PlatformLink> link, std::uint32_t processId);

    // The platform's messages, in their order; and the end of the connection.
    void Received(ToProcess const& message);
    void Disconnected();

    // Any other process is a desktop program: it has no package identity, gets no activations and is exempt from
    // faults.
    bool IsApp() const
    {
        std::lock_guard const lock(m_mutex);
        return m_role == Role::App;
    }

    // Waits for the next activation; nothing when the app ends. Called on the UI thread, a
    // single-threaded apartment, which serves its COM calls meanwhile.
    std::optional<Activation> NextActivation();

    // Signalled while the UI thread is at no activation.
    HANDLE UiThreadIdle() const noexcept { return m_activations.Idle(); }

    // The app asks for its end: NextActivation gives nothing more.
    void Exit()
    {
        Tell(ExitAnnounced{});
        End();
    }

    // The same, from outside.
    void End() { m_activations.End(); }

    // The fault to inject into this call, if any.
    virtual std::optional<Fault> TakeFault(std::wstring_view call);

    // A fault of this call is in force.
    bool HasFault(std::wstring_view call) const
    {
        std::lock_guard const lock(m_mutex);
        return m_faults.Has(call);
    }

    // For the device's journal.
    void Report(std::wstring kind, std::vector<std::wstring> details)
    {
        Tell(sim::Report{std::move(kind), std::move(details)});
    }

    void Tell(FromProcess const& message) { m_link->Send(message); }

    // Asks the platform what it answers at once, and waits for that. Not on a thread that Received is called on. Throws
    // hresult_error when the platform refuses or hangs.
    template <typename Request>
    typename Request::Answer Ask(Request const& request)
    {
        return AnswerIn<Request>(AskAny(request));
    }

    // The same; `answered` is called on a thread of the system's pool, with what AnswerIn reads.
    void AskLater(AnyRequest request, std::function<void(AnyAnswer const&)> answered)
    {
        Ask(std::move(request), {std::move(answered), true});
    }

    // Throws hresult_error for a refusal.
    template <typename Request>
    static typename Request::Answer AnswerIn(AnyAnswer const& answer)
    {
        ThrowIfRefused(answer);
        return std::get<typename Request::Answer>(answer);
    }

    // The folder of the app's data (...\Packages\<family>), and where the app's package lies. Throw hresult_error
    // APPMODEL_ERROR_NO_PACKAGE for a process without package identity.
    std::wstring DataFolder() const { return m_device.PackageDataFolder(AppsWelcome().family); }

    virtual std::wstring PackageFolder() const { return AppsWelcome().folder; }

    // What the platform says to connections and task instances goes through it.
    MessageRouter& Router() noexcept { return m_router; }

    // An override failed and nothing handled it. Ends a real process at once.
    virtual void Fail(std::int32_t result) = 0;

    // The initial content of the app's window. Called on the UI thread.
    virtual IInspectable WindowContent() { return nullptr; }

    // The app has taken a deferral of a request that it serves, or has completed one. Told each time, also when that
    // changes nothing: for tests.
    virtual void DeferralTaken(std::uint32_t request) {}
    virtual void DeferralCompleted(std::uint32_t request) {}

  protected:
    // Runs the continuation of a request on this thread.
    void Deliver(Answer const& answer);

    // The app's UI thread ends.
    virtual void AppEnded() {}

    // The connection to the platform is lost.
    virtual void PlatformLost() {}

    PoolWork& Work() noexcept { return m_work; }

  private:
    enum class Role
    {
        Unknown,
        App,
        DesktopProgram,
        None // no broker serves the device
    };

    struct Waiter
    {
        std::function<void(AnyAnswer const&)> answered;
        bool isOnPool; // else where the answer arrives
    };

    void Handle(Answer const& answer);
    std::optional<Waiter> TakeWaiter(std::uint32_t number);
    void TakeRole(Role role);
    Welcome const& AppsWelcome() const;
    AnyAnswer AskAny(AnyRequest request);
    void Ask(AnyRequest request, Waiter waiter);
    static void ThrowIfRefused(AnyAnswer const& answer);

    Device const m_device;
    unsigned const m_answerLimit;
    std::shared_ptr<PlatformLink> m_link;
    ActivationQueue m_activations;
    PoolWork m_work;
    MessageRouter m_router{*this, m_work};
    mutable std::mutex m_mutex; // over all that follows
    std::condition_variable m_changed;
    Role m_role = Role::Unknown;
    Welcome m_welcome; // does not change once it has come
    FaultTable m_faults;
    std::map<std::uint32_t, Waiter> m_waiters; // by the number of the request
    std::uint32_t m_lastRequest = 0;
};

} // namespace sim
