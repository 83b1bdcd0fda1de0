#pragma once
#include "simulator/model/Device.h"
#include "simulator/model/FaultTable.h"
#include "simulator/runtime/ActivationQueue.h"
#include "simulator/runtime/Deliveries.h"
#include "simulator/runtime/Host.h"
#include "simulator/transport/PipeChannel.h"

#include <atomic>
#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>

namespace sim
{

// A real process's way to its device's broker. It lives until the process ends. When the broker goes, the device is
// off, and so is the process.
class PipeHost : public Host
{
  public:
    // Connects to the broker of the device in VELMO_SIM_HOME and says which process this is: the app's, or a desktop
    // program that the broker did not start for the app. Throws hresult_error: APPMODEL_ERROR_NO_PACKAGE when there is
    // no broker.
    PipeHost();

    // A desktop program has no package identity, gets no activations and is struck by no faults.
    bool IsApp() const noexcept { return m_greeting == Greeting::App; }

    std::optional<Activation> NextActivation() override;
    void Exit() override;
    [[noreturn]] void Fail(std::int32_t result) override;
    std::optional<Fault> TakeFault(std::wstring_view call) override;
    void LaunchDesktop(std::wstring const& application, std::optional<std::wstring> const& group,
                       Launched launched) override;
    void Report(std::wstring kind, std::vector<std::wstring> details) override;
    Message Ask(Message const& request) override;
    void AskLater(Message const& request, std::function<void(Message)> answered) override;
    void Tell(Message const& words) override;
    void Listen(std::function<void(Message const&)> listener) override;
    std::wstring DataFolder() override;
    std::wstring PackageFolder() override;

  private:
    enum class Greeting
    {
        Awaited,
        App,
        DesktopProgram,
        None // nobody serves the device
    };

    using Answered = std::function<void(Message)>;

    void NeedApp() const;
    void Received(Message message);
    void Closed();
    void Greeted(Greeting greeting);
    void SetFaults(Message const& message);
    void Send(Message message, Answered answered);

    // Has left when it returns: the process may end right afterwards, and what still had to be written would be lost.
    // Not on the connection's thread.
    void Say(Message const& message);
    void Answer(Message message);

    Device const m_device;
    std::shared_ptr<PipeChannel> m_channel;
    ActivationQueue m_activations;
    PoolWork m_work;
    Deliveries m_deliveries{m_work};
    std::mutex m_mutex; // over all that follows
    std::condition_variable m_greeted;
    std::condition_variable m_answered;
    std::atomic<Greeting> m_greeting = Greeting::Awaited;
    std::wstring m_familyName; // these two do not change once greeted
    std::wstring m_packageFolder;
    FaultTable m_faults;
    std::map<std::wstring, Answered> m_pending; // by the name of the request; called on the connection's thread
    unsigned m_lastRequest = 0;
};

} // namespace sim
