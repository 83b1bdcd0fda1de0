#pragma once
#include "simulator/runtime/Host.h"

#include <coroutine>
#include <cstdint>
#include <windows.h>

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

// co_await: resumes after so many milliseconds, on a thread of the multi-threaded apartment.
class Delay
{
  public:
    explicit Delay(std::uint32_t milliseconds) noexcept : m_milliseconds(milliseconds) {}

    bool await_ready() const noexcept { return false; }

    void await_suspend(std::coroutine_handle<> coroutine) const
    {
        auto* const timer = CreateThreadpoolTimer(OnTime, coroutine.address(), nullptr);
        winrt::check_bool(timer != nullptr);
        auto const due = -static_cast<std::int64_t>(m_milliseconds) * 10'000; // from now, in units of 100 ns
        FILETIME time{static_cast<DWORD>(due & 0xFFFFFFFF), static_cast<DWORD>(due >> 32)};
        SetThreadpoolTimer(timer, &time, 0, 0);
    }

    void await_resume() const noexcept {}

  private:
    static void CALLBACK OnTime(PTP_CALLBACK_INSTANCE, void* context, PTP_TIMER timer)
    {
        CloseThreadpoolTimer(timer);
        std::coroutine_handle<>::from_address(context).resume();
    }

    std::uint32_t m_milliseconds;
};

} // namespace sim
