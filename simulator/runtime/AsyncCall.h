#pragma once
#include "simulator/runtime/AsyncFault.h"
#include "simulator/runtime/CurrentHost.h"

#include <coroutine>
#include <optional>
#include <utility>
#include <winrt/Windows.Foundation.h>

namespace sim
{

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

// The operation of a call that asks the platform. known: its result, when the platform need not be asked. finish: makes
// it of the answer otherwise. Fails as cancelled when the process is no more.
template <typename Result, typename Request, typename Finish>
winrt::Windows::Foundation::IAsyncOperation<Result> AskPlatform(AsyncFault fault, HostReference process,
                                                                Request request, Finish finish,
                                                                std::optional<Result> known = std::nullopt)
{
    co_await winrt::resume_agile(fault.Begin());
    if (known)
    {
        co_await winrt::resume_background(); // where completions arrive
        co_return *known;
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
