#include "simulator/runtime/PipeHost.h"

#include "simulator/model/Error.h"
#include "simulator/model/Text.h"
#include "simulator/runtime/RunOnPool.h"
#include "simulator/transport/Pipe.h"

#include <winrt/base.h>

namespace sim
{

namespace
{

constexpr auto noPackage = static_cast<std::int32_t>(0x80073D54); // APPMODEL_ERROR_NO_PACKAGE
constexpr std::uint32_t unexpected = 0x8000FFFF;                  // E_UNEXPECTED
constexpr UINT stowedException = 0xC000027B;                      // the exit code of a process whose app failed

Device DeviceOfProcess()
try
{
    return Device::FromEnvironment();
}
catch (Error const& error)
{
    throw winrt::hresult_error(noPackage, error.Message());
}

std::shared_ptr<PipeChannel> Connect(Device const& device)
try
{
    auto pipe = ConnectPipe(device.PipeName());
    return pipe ? PipeChannel::Open(std::move(pipe)) : throw Error(L"no broker serves the device");
}
catch (Error const& error)
{
    throw winrt::hresult_error(noPackage, error.Message());
}

std::vector<std::wstring> Rest(Message const& message, std::size_t from)
{
    return {message.begin() + static_cast<std::ptrdiff_t>(from), message.end()};
}

// With room for its name, which Send gives.
Message Question(Message const& request)
{
    Message message = {L"ask", L""};
    message.insert(message.end(), request.begin(), request.end());
    return message;
}

} // namespace

PipeHost::PipeHost() : m_device(DeviceOfProcess()), m_channel(Connect(m_device))
{
    m_channel->Start({[this](Message message) { Received(std::move(message)); }, [this] { Closed(); }});
    m_channel->Send({L"hello-app", std::to_wstring(GetCurrentProcessId())});
    std::unique_lock lock(m_mutex);
    m_greeted.wait(lock, [&] { return m_greeting != Greeting::Awaited; });
    if (m_greeting == Greeting::None)
    {
        throw winrt::hresult_error(noPackage);
    }
}

std::optional<Activation> PipeHost::NextActivation()
{
    auto activation = m_activations.Next();
    if (activation)
    {
        Say({L"taken", activation->id});
    }
    return activation;
}

void PipeHost::Exit()
{
    Say({L"exiting"});
    m_activations.End();
}

void PipeHost::Fail(std::int32_t)
{
    TerminateProcess(GetCurrentProcess(), stowedException);
    __builtin_unreachable();
}

std::optional<Fault> PipeHost::TakeFault(std::wstring_view call)
{
    std::optional<Fault> fault;
    {
        std::lock_guard const lock(m_mutex);
        fault = m_faults.Take(call);
    }
    if (fault)
    {
        Say({L"fault-used", fault->call});
    }
    return fault;
}

void PipeHost::LaunchDesktop(std::wstring const& application, std::optional<std::wstring> const& group,
                             Launched launched)
{
    Message message = {L"launch-desktop", L"", application};
    if (group)
    {
        message.push_back(*group);
    }
    // Not on the connection's thread, which has to read on while the app's continuations run.
    Send(std::move(message), [launched = std::move(launched)](Message const& answer) {
        RunOnPool([launched, code = static_cast<std::int32_t>(ParseNumber(answer.front()).value_or(unexpected))] {
            launched(code);
        });
    });
}

void PipeHost::Report(std::wstring kind, std::vector<std::wstring> details)
{
    details.insert(details.begin(), std::move(kind));
    Say(MakeMessage(L"report", details));
}

Message PipeHost::Ask(Message const& request)
{
    Message answer; // one that has come is not empty
    Send(Question(request), [&](Message words) {
        std::lock_guard const lock(m_mutex);
        answer = std::move(words);
        m_answered.notify_all();
    });
    std::unique_lock lock(m_mutex);
    m_answered.wait(lock, [&] { return !answer.empty(); });
    return answer;
}

void PipeHost::AskLater(Message const& request, std::function<void(Message)> answered)
{
    Send(Question(request), [answered = std::move(answered)](Message words) {
        RunOnPool([answered, words = std::move(words)] { answered(words); });
    });
}

void PipeHost::Tell(Message const& words)
{
    Say(MakeMessage(L"tell", words));
}

void PipeHost::Listen(std::function<void(Message const&)> listener)
{
    m_deliveries.Listen(std::move(listener));
}

std::wstring PipeHost::DataFolder()
{
    NeedApp();
    return m_device.PackageDataFolder(m_familyName);
}

std::wstring PipeHost::PackageFolder()
{
    NeedApp();
    return m_packageFolder;
}

void PipeHost::NeedApp() const
{
    if (!IsApp())
    {
        throw winrt::hresult_error(noPackage);
    }
}

void PipeHost::Received(Message message)
{
    auto const& verb = message.front();
    if (verb == L"activate")
    {
        if (auto activation = Activation::FromWords(Rest(message, 1)))
        {
            m_activations.Add(std::move(*activation));
        }
    }
    else if ((verb == L"answer" || verb == L"launched") && message.size() > 2)
    {
        Answer(std::move(message));
    }
    else if (verb == L"request" || verb == L"service-closed" || verb == L"cancel" || verb == L"ended")
    {
        m_deliveries.Add(std::move(message));
    }
    else if (verb == L"fault" || verb == L"faults-clear")
    {
        SetFaults(message);
    }
    else if (verb == L"welcome" && message.size() > 2)
    {
        m_familyName = message[1];
        m_packageFolder = message[2];
        Greeted(Greeting::App);
    }
    else if (verb == L"refused")
    {
        Greeted(Greeting::DesktopProgram);
    }
}

void PipeHost::Closed()
{
    if (m_greeting != Greeting::Awaited)
    {
        TerminateProcess(GetCurrentProcess(), 1);
    }
    Greeted(Greeting::None);
}

void PipeHost::Greeted(Greeting greeting)
{
    std::lock_guard const lock(m_mutex);
    m_greeting = greeting;
    m_greeted.notify_all();
}

void PipeHost::SetFaults(Message const& message)
{
    std::lock_guard const lock(m_mutex);
    message.front() == L"fault" ? m_faults.Set(ParseFault(Rest(message, 1))) : m_faults.Clear();
}

// message: its second word is for the name of the request. The broker takes what is too large for gibberish, and would
// hang up.
void PipeHost::Send(Message message, Answered answered)
{
    {
        std::lock_guard const lock(m_mutex);
        message[1] = std::to_wstring(++m_lastRequest);
        if (Fits(message))
        {
            m_pending.emplace(message[1], std::exchange(answered, nullptr));
        }
    }
    if (answered)
    {
        answered({L"error", L"the request is too large"});
        return;
    }
    Say(message);
}

void PipeHost::Say(Message const& message)
{
    m_channel->Send(message);
    m_channel->Flush();
}

void PipeHost::Answer(Message message)
{
    std::unique_lock lock(m_mutex);
    auto const found = m_pending.extract(message[1]);
    lock.unlock();
    if (found)
    {
        message.erase(message.begin(), message.begin() + 2);
        found.mapped()(std::move(message));
    }
}

} // namespace sim
