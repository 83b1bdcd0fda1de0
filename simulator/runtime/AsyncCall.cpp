#include "simulator/runtime/AsyncCall.h"

#include <windows.h>

using winrt::Windows::Foundation::IAsyncAction;

namespace sim
{

namespace
{

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

} // namespace

AsyncFault::AsyncFault(std::wstring_view call) : m_fault(CurrentHost().TakeFault(call))
{
    if (auto const* const fault = Of(FaultKind::Now))
    {
        throw winrt::hresult_error(fault->Result());
    }
}

IAsyncAction AsyncFault::Begin() const
{
    if (Of(FaultKind::Never))
    {
        co_await std::suspend_always();
    }
    auto const* const failure = Of(FaultKind::Completion);
    if (failure || Of(FaultKind::Cancelled))
    {
        co_await winrt::resume_background(); // later, and where completions arrive
        constexpr auto cancelled = static_cast<std::int32_t>(0x800704C7);
        throw winrt::hresult_error(failure ? failure->Result() : cancelled);
    }
}

IAsyncAction AsyncFault::End() const
{
    if (auto const* const fault = Of(FaultKind::Delay))
    {
        co_await Delay(fault->value);
    }
    while (IsHeld())
    {
        constexpr std::uint32_t pause = 10; // in milliseconds
        co_await Delay(pause);
    }
}

} // namespace sim
