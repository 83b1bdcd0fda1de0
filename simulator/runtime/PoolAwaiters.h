#pragma once
#include "simulator/runtime/Answers.h"
#include "simulator/runtime/Runtime.h"

#include <coroutine>
#include <cstdint>
#include <optional>
#include <string>
#include <windows.h>

namespace sim
{

// co_await: starts the desktop component, goes on when the platform has answered, on a thread of the multi-threaded
// apartment, and gives the answer.
class DesktopLaunch
{
  public:
    DesktopLaunch(std::wstring application, std::optional<std::wstring> group)
        : m_application(std::move(application)), m_group(std::move(group))
    {
    }

    bool await_ready() const noexcept { return false; }

    void await_suspend(std::coroutine_handle<> coroutine)
    {
        CurrentHost().LaunchDesktop(m_application, m_group, [this, coroutine](std::int32_t result) {
            m_result = result;
            coroutine.resume();
        });
    }

    std::int32_t await_resume() const noexcept { return m_result; }

  private:
    std::wstring m_application;
    std::optional<std::wstring> m_group;
    std::int32_t m_result = 0;
};

// co_await: asks the platform, goes on when it has answered, on a thread of the multi-threaded apartment, and gives the
// answer. Throws hresult_error when the platform has none. Give it a message that has a name: GCC 12 cannot make one
// within a co_await.
class Asking
{
  public:
    explicit Asking(Message request) : m_request(std::move(request)) {}

    bool await_ready() const noexcept { return false; }

    void await_suspend(std::coroutine_handle<> coroutine)
    {
        CurrentHost().AskLater(m_request, [this, coroutine](Message answer) {
            m_answer = std::move(answer);
            coroutine.resume();
        });
    }

    Message await_resume() { return Answered(std::move(m_answer)); }

  private:
    Message m_request;
    Message m_answer;
};

// co_await: goes on after so many milliseconds, on a thread of the multi-threaded apartment.
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
