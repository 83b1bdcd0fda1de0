#include "simulator/runtime/Host.h"

#include "simulator/runtime/CurrentHost.h"

#include <chrono>
#include <utility>
#include <windows.h>

namespace sim
{

namespace
{

constexpr wchar_t hungText[] = L"the device's broker does not answer";

} // namespace

void Host::Connect(std::shared_ptr<PlatformLink> link, std::uint32_t processId)
{
    m_link = std::move(link);
    Tell(Hello{processId});
    std::unique_lock lock(m_mutex);
    if (!m_changed.wait_for(lock, std::chrono::milliseconds(m_answerLimit), [&] { return m_role != Role::Unknown; }))
    {
        throw winrt::hresult_error(HRESULT_FROM_WIN32(ERROR_TIMEOUT), hungText);
    }
    if (m_role == Role::None)
    {
        throw winrt::hresult_error(HRESULT_FROM_WIN32(APPMODEL_ERROR_NO_PACKAGE));
    }
}

void Host::Received(ToProcess const& message)
{
    std::visit([this](auto const& said) { Handle(said); }, message);
}

void Host::Disconnected()
{
    {
        std::unique_lock lock(m_mutex);
        if (m_role != Role::Unknown)
        {
            lock.unlock();
            PlatformLost();
            return;
        }
    }
    TakeRole(Role::None);
}

bool Host::IsApp() const
{
    std::lock_guard const lock(m_mutex);
    return m_role == Role::App;
}

std::optional<Activation> Host::NextActivation()
{
    auto activation = m_activations.Next();
    if (activation)
    {
        Tell(ActivationTaken{activation->id});
    }
    else
    {
        AppEnded();
    }
    return activation;
}

void Host::Exit()
{
    Tell(ExitAnnounced{});
    End();
}

std::optional<Fault> Host::TakeFault(std::wstring_view call)
{
    std::optional<Fault> fault;
    {
        std::lock_guard const lock(m_mutex);
        fault = m_faults.Take(call);
    }
    if (fault)
    {
        Tell(FaultStruck{fault->call});
    }
    return fault;
}

void Host::Report(std::wstring kind, std::vector<std::wstring> details)
{
    Tell(sim::Report{std::move(kind), std::move(details)});
}

void Host::AskLater(AnyRequest request, std::function<void(AnyAnswer const&)> answered)
{
    Ask(std::move(request), {std::move(answered), true});
}

std::wstring Host::DataFolder() const
{
    NeedApp();
    return m_device.PackageDataFolder(m_welcome.family);
}

std::wstring Host::PackageFolder() const
{
    NeedApp();
    return m_welcome.folder;
}

void Host::Deliver(Answer const& answer)
{
    std::unique_lock lock(m_mutex);
    auto const waiter = m_waiters.extract(answer.number);
    lock.unlock();
    if (waiter)
    {
        waiter.mapped().answered(answer.content);
    }
}

void Host::Handle(Welcome const& message)
{
    {
        std::lock_guard const lock(m_mutex);
        m_welcome = message;
    }
    TakeRole(Role::App);
}

void Host::Handle(NotTheApp const&)
{
    TakeRole(Role::DesktopProgram);
}

void Host::Handle(Activate const& message)
{
    m_activations.Add(message.activation);
}

void Host::Handle(FaultSet const& message)
{
    std::lock_guard const lock(m_mutex);
    m_faults.Set(message.fault);
}

void Host::Handle(FaultsCleared const&)
{
    std::lock_guard const lock(m_mutex);
    m_faults.Clear();
}

void Host::Handle(MessageRouter::Message const& message)
{
    m_router.Add(message);
}

// What waits on this thread for an answer must not run the app's continuations: messages are read on it.
void Host::Handle(Answer const& message)
{
    std::unique_lock lock(m_mutex);
    auto const waiter = m_waiters.find(message.number);
    auto const isOnPool = waiter != m_waiters.end() && waiter->second.isOnPool;
    lock.unlock();
    if (!isOnPool)
    {
        Deliver(message);
        return;
    }
    m_work.Run([this, message] {
        HostScope const scope(*this);
        Deliver(message);
    });
}

void Host::Handle(EventHappened const&)
{
    // Only for those who follow, which no process with runtime classes does.
}

void Host::TakeRole(Role role)
{
    std::lock_guard const lock(m_mutex);
    m_role = role;
    m_changed.notify_all();
}

void Host::NeedApp() const
{
    if (!IsApp())
    {
        throw winrt::hresult_error(HRESULT_FROM_WIN32(APPMODEL_ERROR_NO_PACKAGE));
    }
}

AnyAnswer Host::AskAny(AnyRequest request)
{
    auto const answer = std::make_shared<std::optional<AnyAnswer>>(); // it may come when nothing waits any more
    Ask(std::move(request), {[this, answer](AnyAnswer const& given) {
                                 std::lock_guard const lock(m_mutex);
                                 *answer = given;
                                 m_changed.notify_all();
                             },
                             false});
    std::unique_lock lock(m_mutex);
    m_changed.wait_for(lock, std::chrono::milliseconds(m_answerLimit), [&] { return answer->has_value(); });
    return answer->value_or(Refused{hungText});
}

void Host::Ask(AnyRequest request, Waiter waiter)
{
    std::uint32_t number = 0;
    {
        std::lock_guard const lock(m_mutex);
        number = ++m_lastRequest;
        m_waiters.emplace(number, std::move(waiter));
    }
    if (!m_link->Send(Request{number, std::move(request)}))
    {
        Handle(sim::Answer{number, Refused{L"the request is too large"}});
    }
}

void Host::ThrowIfRefused(AnyAnswer const& answer)
{
    if (auto const* const refused = std::get_if<Refused>(&answer))
    {
        throw winrt::hresult_error(E_FAIL, winrt::hstring(refused->reason));
    }
}

} // namespace sim
