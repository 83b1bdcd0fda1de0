#pragma once
#include "simulator/protocol/Fault.h"
#include "simulator/runtime/CancellableOperation.h"
#include "simulator/runtime/CurrentHost.h"

#include <coroutine>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>
#include <winrt/Windows.Foundation.h>

namespace sim
{

// The fault of an asynchronous call, if it has one.
class AsyncFault
{
  public:
    // Throws hresult_error when the call itself fails.
    explicit AsyncFault(std::wstring_view call);

    // The call returns null.
    bool GivesNull() const noexcept { return Of(FaultKind::Null) != nullptr; }

    // The status that the operation completes with, without doing anything.
    std::optional<std::uint32_t> Status() const noexcept
    {
        auto const* const fault = Of(FaultKind::Status);
        return fault ? std::optional(fault->value) : std::nullopt;
    }

    // What the call returns for its operation: one that can be cancelled, or takes no handler, or has ended already.
    template <typename Operation>
    Operation Handed(Operation const& operation) const
    {
        auto const* const unheard = Of(FaultKind::Unheard);
        auto const refusal = unheard ? unheard->Result() : 0;
        return Of(FaultKind::Ended) ? Ended(operation) : CancellableOperation<Operation>::Of(operation, refusal);
    }

    // The operation holds this object and awaits Begin first, where the fault fails it, cancels it or keeps it for
    // good. Agile.
    winrt::Windows::Foundation::IAsyncAction Begin() const;

    // The operation awaits it last, where the fault delays or holds it. Agile.
    winrt::Windows::Foundation::IAsyncAction End() const;

  private:
    // The fault if it is of that kind; otherwise null.
    Fault const* Of(FaultKind kind) const noexcept { return m_fault && m_fault->kind == kind ? &*m_fault : nullptr; }

    bool IsHeld() const
    {
        auto const* const fault = Of(FaultKind::Held);
        auto const process = fault ? m_process.Get() : nullptr;
        return process && process->HasFault(fault->call);
    }

    // Waits for its end.
    template <typename Operation>
    static Operation Ended(Operation operation)
    {
        try
        {
            operation.get();
        }
        catch (...)
        {
            // ignored: GetResults throws it, too
        }
        co_return operation.GetResults();
    }

    HostReference m_process;
    std::optional<Fault> m_fault;
};

// co_await: asks the platform, resumes when it has answered, on a thread of the multi-threaded apartment, and gives the
// answer. Throws hresult_error when the platform refuses. Give it a request that has a name: GCC 12 cannot make one
// within a co_await.
template <typename Request>
class AnswerOf
{
  public:
    AnswerOf(Host& host, Request request) : m_host(host), m_request(std::move(request)) {}

    bool await_ready() const noexcept { return false; }

    void await_suspend(std::coroutine_handle<> coroutine)
    {
        m_host.AskLater(m_request, [this, coroutine](AnyAnswer const& answer) {
            m_answer = answer;
            coroutine.resume();
        });
    }

    typename Request::Answer await_resume() const { return Host::AnswerIn<Request>(m_answer); }

  private:
    Host& m_host;
    Request m_request;
    AnyAnswer m_answer;
};

// The operation of a call that asks the platform. finish: makes the result of the answer. known: the result, when the
// platform need not be asked. Fails as cancelled when the process has ended.
template <typename Operation, typename Request, typename Finish, typename Known = std::nullopt_t>
Operation AskPlatform(AsyncFault fault, HostReference process, Request request, Finish finish,
                      Known known = std::nullopt)
{
    co_await winrt::resume_agile(fault.Begin());
    if constexpr (!std::is_same_v<Known, std::nullopt_t>)
    {
        if (known)
        {
            co_await winrt::resume_background(); // where completions arrive
            co_return *known;
        }
    }
    auto const host = process.Get();
    if (!host)
    {
        throw winrt::hresult_canceled();
    }
    auto const answer = co_await AnswerOf(*host, request);
    co_await winrt::resume_agile(fault.End());
    co_return finish(answer);
}

} // namespace sim
