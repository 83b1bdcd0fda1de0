#pragma once
#include "simulator/model/FaultTable.h"
#include "simulator/runtime/ActivationQueue.h"
#include "simulator/runtime/Host.h"
#include "simulator/transport/PipeChannel.h"

#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>

namespace sim
{

// A real app process's way to its device's broker. It lives until the process ends. When the broker goes, the device
// is off, and so is the process.
class PipeHost : public Host
{
  public:
    // Connects to the broker of the device in VELMO_SIM_HOME and says which process this is. Throws hresult_error:
    // APPMODEL_ERROR_NO_PACKAGE when this process was not started by that broker.
    PipeHost();

    std::optional<Activation> NextActivation() override;
    void Exit() override;
    [[noreturn]] void Fail(std::int32_t result) override;
    std::optional<Fault> TakeFault(std::wstring_view call) override;
    void LaunchDesktop(std::wstring const& application, std::optional<std::wstring> const& group,
                       Launched launched) override;
    void Report(std::wstring kind, std::vector<std::wstring> details) override;

  private:
    enum class Greeting
    {
        Awaited,
        Welcome,
        Refused
    };

    void Received(Message const& message);
    void Closed();
    void Greeted(Greeting greeting);
    void EndLaunch(std::wstring const& request, std::wstring const& result);

    std::shared_ptr<PipeChannel> m_channel;
    ActivationQueue m_activations;
    std::mutex m_mutex; // over all that follows
    std::condition_variable m_greeted;
    Greeting m_greeting = Greeting::Awaited;
    FaultTable m_faults;
    std::map<std::wstring, Launched> m_launches; // by the name of the request
    unsigned m_lastLaunch = 0;
};

} // namespace sim
