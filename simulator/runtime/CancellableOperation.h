#pragma once
#include "simulator/runtime/Namespaces.h"
#include "simulator/runtime/PoolWork.h"

#include <mutex>
#include <optional>
#include <utility>
#include <winrt/Windows.Foundation.h>

namespace sim
{

// An asynchronous operation that ends as the one behind it does, or with its cancellation: at once, whatever the one
// behind it still waits for. Any thread.
template <typename Operation>
struct CancellableOperation : winrt::implements<CancellableOperation<Operation>, Operation, Foundation::IAsyncInfo>
{
    using AsyncStatus = Foundation::AsyncStatus;
    using Handler = decltype(std::declval<Operation>().Completed());

    // operation: without a handler. refusal: what each handler is refused with, if it is a failure.
    static Operation Of(Operation const& operation, std::int32_t refusal = 0)
    {
        auto const made = winrt::make_self<CancellableOperation>(operation, refusal);
        operation.Completed([made](auto const&, AsyncStatus status) {
            if (auto const handler = made->End(status))
            {
                made->Call(*handler);
            }
        });
        return *made;
    }

    CancellableOperation(Operation operation, std::int32_t refusal)
        : m_operation(std::move(operation)), m_refusal(refusal)
    {
    }

    void Completed(Handler const& handler)
    {
        winrt::check_hresult(m_refusal);
        {
            std::lock_guard const lock(m_mutex);
            if (std::exchange(m_handlerWasSet, true))
            {
                throw winrt::hresult_illegal_delegate_assignment();
            }
            if (m_status == AsyncStatus::Started)
            {
                m_handler = winrt::impl::make_agile_delegate(handler);
                return;
            }
        }
        Call(handler);
    }

    Handler Completed() const
    {
        std::lock_guard const lock(m_mutex);
        return m_handler;
    }

    auto GetResults() const
    {
        auto const status = Status();
        if (status == AsyncStatus::Started)
        {
            throw winrt::hresult_illegal_method_call();
        }
        return status == AsyncStatus::Canceled ? throw winrt::hresult_canceled() : m_operation.GetResults();
    }

    std::uint32_t Id() const { return m_operation.Id(); }

    AsyncStatus Status() const
    {
        std::lock_guard const lock(m_mutex);
        return m_status;
    }

    winrt::hresult ErrorCode() const
    {
        return Status() == AsyncStatus::Canceled ? winrt::hresult_canceled().code() : m_operation.ErrorCode();
    }

    // The handler is called where completions arrive.
    void Cancel()
    {
        if (auto const handler = End(AsyncStatus::Canceled))
        {
            m_operation.Cancel();
            RunOnPool([self = this->get_strong(), handler] { self->Call(*handler); });
        }
    }

    void Close() const { m_operation.Close(); }

  private:
    // The handler to call; nothing when it has ended already.
    std::optional<Handler> End(AsyncStatus status)
    {
        std::lock_guard const lock(m_mutex);
        if (m_status != AsyncStatus::Started)
        {
            return std::nullopt;
        }
        m_status = status;
        return std::exchange(m_handler, nullptr);
    }

    // Its exceptions do not propagate.
    void Call(Handler const& handler)
    {
        if (handler)
        {
            winrt::impl::invoke(handler, static_cast<Operation>(*this), Status());
        }
    }

    Operation const m_operation;
    std::int32_t const m_refusal;
    mutable std::mutex m_mutex; // over all that follows
    AsyncStatus m_status = AsyncStatus::Started;
    bool m_handlerWasSet = false;
    Handler m_handler{nullptr};
};

} // namespace sim
