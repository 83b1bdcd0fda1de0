#pragma once
#include <utility>
#include <winrt/Windows.Foundation.h>

#include <windows.h>

namespace VelmoNotificationClient
{

namespace impl
{

template <typename Continuation, typename Operation>
winrt::fire_and_forget ContinueOnPool(Continuation continuation, Operation operation,
                                      winrt::Windows::Foundation::AsyncStatus status)
{
    co_await winrt::resume_background();
    continuation(operation, status);
}

} // namespace impl

// Calls continuation(operation, status) when the operation has completed or failed, on the thread that completes it.
// For an operation that has completed already, the platform calls a handler at once on the thread that sets it; the
// continuation then runs on the thread pool, so that it never runs on the calling thread. Throws hresult_error when the
// handler cannot be set. An exception that leaves the continuation ends the process, as does a thread pool that accepts
// no work.
template <typename Operation, typename Continuation>
void WhenEnded(Operation const& operation, Continuation continuation)
{
    // NOLINTNEXTLINE(bugprone-exception-escape): a failure in it ends the process, on purpose
    operation.Completed([continuation = std::move(continuation), starter = GetCurrentThreadId()](
                            Operation const& ended, winrt::Windows::Foundation::AsyncStatus status) noexcept {
        if (GetCurrentThreadId() == starter)
        {
            impl::ContinueOnPool(continuation, ended, status);
        }
        else
        {
            continuation(ended, status);
        }
    });
}

} // namespace VelmoNotificationClient
