#pragma once
#include <coroutine>
#include <winrt/Windows.Foundation.h>

namespace VelmoNotificationClient
{

// co_await: goes on when an operation has ended, well or not, on the thread that ends it. What came of it is not read.
template <typename Operation>
class Settled
{
  public:
    explicit Settled(Operation operation) noexcept : m_operation(std::move(operation)) {}

    bool await_ready() const noexcept { return false; }

    void await_suspend(std::coroutine_handle<> coroutine) const
    {
        // The coroutine may end, and this object with it, before the call returns.
        auto const operation = m_operation;
        operation.Completed([coroutine](auto&&...) { coroutine.resume(); });
    }

    void await_resume() const noexcept {}

  private:
    Operation m_operation;
};

} // namespace VelmoNotificationClient
