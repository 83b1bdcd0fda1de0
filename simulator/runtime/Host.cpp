#include "simulator/runtime/Host.h"

#include "simulator/base/Overloaded.h"
#include "simulator/protocol/BrokerPipe.h"
#include "simulator/runtime/CurrentHost.h"

#include <chrono>
#include <windows.h>

namespace sim
{

void Host::Connect(std::shared_ptr<PlatformLink> link, std::uint32_t processId)
{
    m_link = std::move(link);
    Tell(Hello{processId});
    std::unique_lock lock(m_mutex);
    if (!m_changed.wait_for(lock, std::chrono::milliseconds(m_answerLimit), [&] { return m_role != Role::Unknown; }))
    {
        throw winrt::hresult_error(HRESULT_FROM_WIN32(ERROR_TIMEOUT), HungText(0));
    }
    if (m_role == Role::None)
    {
        throw winrt::hresult_error(HRESULT_FROM_WIN32(APPMODEL_ERROR_NO_PACKAGE));
    }
}

void Host::Received(ToProcess const& message)
{
    std::visit(Overloaded{
                   [this](Welcome const& welcome) {
                       std::lock_guard const lock(m_mutex);
                       m_welcome = welcome;
                       TakeRole(Role::App);
                   },
                   [this](NotTheApp const&) {
                       std::lock_guard const lock(m_mutex);
                       TakeRole(Role::DesktopProgram);
                   },
                   [this](Activate const& activate) { m_activations.Add(activate.activation); },
                   [this](FaultSet const& set) {
                       std::lock_guard const lock(m_mutex);
                       m_faults.Set(set.fault);
                   },
                   [this](FaultsCleared const&) {
                       std::lock_guard const lock(m_mutex);
                       m_faults.Clear();
                   },
                   [this](MessageRouter::Message const& routed) { m_router.Add(routed); },
                   [this](Answer const& answer) { Handle(answer); },
                   [](EventHappened const&) {}, // for processes that Follow
               },
               message);
}

void Host::Disconnected()
{
    std::unique_lock lock(m_mutex);
    if (m_role == Role::Unknown)
    {
        TakeRole(Role::None);
        return;
    }
    lock.unlock();
    PlatformLost();
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

std::optional<Fault> Host::TakeFault(std::wstring_view call)
{
    std::optional<Fault> fault;
    {
        std::lock_guard const lock(m_mutex);
        fault = m_faults.Take(call);
    }
    if (fault)
    {
        Tell(FaultTriggered{fault->call});
    }
    return fault;
}

void Host::Deliver(Answer const& answer)
{
    if (auto const waiter = TakeWaiter(answer.number))
    {
        waiter->answered(answer.content);
    }
}

// The app's continuations run on the pool: they may block, and this thread reads messages.
void Host::Handle(Answer const& answer)
{
    auto const waiter = TakeWaiter(answer.number);
    if (waiter && waiter->isOnPool)
    {
        m_router.Run([answered = waiter->answered, content = answer.content] { answered(content); });
    }
    else if (waiter)
    {
        waiter->answered(answer.content);
    }
}

std::optional<Host::Waiter> Host::TakeWaiter(std::uint32_t number)
{
    std::lock_guard const lock(m_mutex);
    auto waiter = m_waiters.extract(number);
    return waiter ? std::optional(std::move(waiter.mapped())) : std::nullopt;
}

// Under m_mutex.
void Host::TakeRole(Role role)
{
    m_role = role;
    m_changed.notify_all();
}

Welcome const& Host::AppsWelcome() const
{
    if (!IsApp())
    {
        throw winrt::hresult_error(HRESULT_FROM_WIN32(APPMODEL_ERROR_NO_PACKAGE));
    }
    return m_welcome;
}

AnyAnswer Host::AskAny(AnyRequest request)
{
    auto const answer = std::make_shared<std::optional<AnyAnswer>>(); // it may come after the wait
    Ask(std::move(request), {[this, answer](AnyAnswer const& given) {
                                 std::lock_guard const lock(m_mutex);
                                 *answer = given;
                                 m_changed.notify_all();
                             },
                             false});
    std::unique_lock lock(m_mutex);
    m_changed.wait_for(lock, std::chrono::milliseconds(m_answerLimit), [&] { return answer->has_value(); });
    return answer->value_or(Refused{HungText(0)});
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
