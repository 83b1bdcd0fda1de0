#include "simulator/runtime/PipeHost.h"

#include "simulator/model/Device.h"
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
constexpr UINT stowedException = 0xC000027B;                      // the exit code of a process whose app failed

std::shared_ptr<PipeChannel> Connect()
try
{
    auto pipe = ConnectPipe(Device::FromEnvironment().PipeName());
    return pipe ? PipeChannel::Open(std::move(pipe)) : throw Error(L"no broker serves the device");
}
catch (Error const& error)
{
    throw winrt::hresult_error(noPackage, error.Message());
}

std::vector<std::wstring> Rest(Message const& message)
{
    return {message.begin() + 1, message.end()};
}

} // namespace

PipeHost::PipeHost() : m_channel(Connect())
{
    m_channel->Start({[this](Message const& message) { Received(message); }, [this] { Closed(); }});
    m_channel->Send({L"hello-app", std::to_wstring(GetCurrentProcessId())});
    std::unique_lock lock(m_mutex);
    m_greeted.wait(lock, [&] { return m_greeting != Greeting::Awaited; });
    if (m_greeting == Greeting::Refused)
    {
        throw winrt::hresult_error(noPackage);
    }
}

std::optional<Activation> PipeHost::NextActivation()
{
    auto activation = m_activations.Next();
    if (activation)
    {
        m_channel->Send({L"taken", activation->id});
    }
    return activation;
}

void PipeHost::Exit()
{
    m_channel->Send({L"exiting"});
    m_channel->Flush();
    m_activations.End();
}

void PipeHost::Fail(std::int32_t)
{
    m_channel->Flush();
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
        m_channel->Send({L"fault-used", fault->call});
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
    {
        std::lock_guard const lock(m_mutex);
        message[1] = std::to_wstring(++m_lastLaunch);
        m_launches.emplace(message[1], std::move(launched));
    }
    m_channel->Send(message);
}

void PipeHost::Report(std::wstring kind, std::vector<std::wstring> details)
{
    Message message = {L"report", std::move(kind)};
    message.insert(message.end(), details.begin(), details.end());
    m_channel->Send(message);
}

void PipeHost::Received(Message const& message)
{
    auto const& verb = message.front();
    if (verb == L"activate")
    {
        if (auto activation = Activation::FromWords(Rest(message)))
        {
            m_activations.Add(std::move(*activation));
        }
    }
    else if (verb == L"launched" && message.size() == 3)
    {
        EndLaunch(message[1], message[2]);
    }
    else if (verb == L"fault" || verb == L"faults-clear")
    {
        std::lock_guard const lock(m_mutex);
        verb == L"fault" ? m_faults.Set(ParseFault(Rest(message))) : m_faults.Clear();
    }
    else if (verb == L"welcome" || verb == L"refused")
    {
        Greeted(verb == L"welcome" ? Greeting::Welcome : Greeting::Refused);
    }
}

void PipeHost::Closed()
{
    {
        std::lock_guard const lock(m_mutex);
        if (m_greeting == Greeting::Welcome)
        {
            TerminateProcess(GetCurrentProcess(), 1);
        }
    }
    Greeted(Greeting::Refused);
}

void PipeHost::Greeted(Greeting greeting)
{
    std::lock_guard const lock(m_mutex);
    m_greeting = greeting;
    m_greeted.notify_all();
}

// Not on this thread, which has to read on while the app's continuations run.
void PipeHost::EndLaunch(std::wstring const& request, std::wstring const& result)
{
    std::unique_lock lock(m_mutex);
    auto const found = m_launches.extract(request);
    lock.unlock();
    if (found)
    {
        RunOnPool([launched = std::move(found.mapped()),
                   code = static_cast<std::int32_t>(ParseNumber(result).value_or(0))] { launched(code); });
    }
}

} // namespace sim
