// Coroutines that are asynchronous operations: IAsyncAction and IAsyncOperation<T> as return types.
#pragma once

namespace winrt
{

struct get_cancellation_token_t
{
};

// co_await get_cancellation_token(), inside a coroutine that is an asynchronous operation.
[[nodiscard]] inline get_cancellation_token_t get_cancellation_token() noexcept
{
    return {};
}

namespace impl
{

// The cancellation of the coroutine that asked for it; not to be used after the coroutine has ended.
template <typename Promise>
class cancellation_token
{
  public:
    explicit cancellation_token(Promise* promise) noexcept : m_promise(promise) {}
    bool await_ready() const noexcept { return true; }
    void await_suspend(std::coroutine_handle<>) const noexcept {}
    cancellation_token await_resume() const noexcept { return *this; }

    bool operator()() const noexcept { return m_promise->Status() == Windows::Foundation::AsyncStatus::Canceled; }
    // Called once, by the thread that cancels; at once when that has happened already.
    void callback(std::function<void()> handler) const { m_promise->cancellation_callback(std::move(handler)); }

  private:
    Promise* m_promise;
};

// The operation and the coroutine's promise in one object, which lives inside the coroutine's frame. The frame is
// destroyed with the last reference; the running coroutine holds one.
template <typename Derived, typename Async>
struct promise_base : implements<Derived, Async, Windows::Foundation::IAsyncInfo>
{
    using AsyncStatus = Windows::Foundation::AsyncStatus;
    using handler_type = decltype(std::declval<Async const&>().Completed());

    uint32_t __stdcall Release() noexcept
    {
        auto const remaining = this->m_references.subtract();
        if (remaining == 0)
        {
            this->m_references.stabilize();
            std::coroutine_handle<Derived>::from_promise(static_cast<Derived&>(*this)).destroy();
        }
        return remaining;
    }

    // The handler can be set once. It is called once, outside the lock, and its failure stays its own.
    void Completed(handler_type const& handler)
    {
        AsyncStatus status{};
        {
            slim_lock_guard const guard(m_lock);
            if (std::exchange(m_handlerWasSet, true))
            {
                throw hresult_illegal_delegate_assignment();
            }
            status = m_status.load(std::memory_order_relaxed);
            if (!m_finished)
            {
                m_handler = make_agile_delegate(handler);
                return;
            }
        }
        call(handler, status);
    }
    handler_type Completed() noexcept
    {
        slim_lock_guard const guard(m_lock);
        return m_handler;
    }

    uint32_t Id() const noexcept { return 1; }
    AsyncStatus Status() const noexcept { return m_status.load(std::memory_order_acquire); }
    hresult ErrorCode() noexcept
    {
        slim_lock_guard const guard(m_lock);
        return failure();
    }

    // The coroutine ends at its next co_await, with hresult_canceled.
    void Cancel()
    {
        std::function<void()> callback;
        {
            slim_lock_guard const guard(m_lock);
            if (m_status.load(std::memory_order_relaxed) == AsyncStatus::Started)
            {
                m_status.store(AsyncStatus::Canceled, std::memory_order_release);
                callback = std::exchange(m_cancel, nullptr);
            }
        }
        if (callback)
        {
            callback();
        }
    }
    void Close() const noexcept {}

    auto GetResults()
    {
        slim_lock_guard const guard(m_lock);
        if (!m_finished)
        {
            throw hresult_illegal_method_call();
        }
        if (m_exception)
        {
            std::rethrow_exception(m_exception);
        }
        if (m_status.load(std::memory_order_relaxed) == AsyncStatus::Canceled)
        {
            throw hresult_canceled();
        }
        return static_cast<Derived*>(this)->result();
    }

    void cancellation_callback(std::function<void()>&& callback)
    {
        {
            slim_lock_guard const guard(m_lock);
            if (m_status.load(std::memory_order_relaxed) != AsyncStatus::Canceled)
            {
                m_cancel = std::move(callback);
                return;
            }
        }
        callback();
    }

    // ---- the coroutine's side

    Async get_return_object() noexcept
    {
        Async result{nullptr};
        copy_from_abi(result, this->get_unknown());
        return result;
    }
    std::suspend_never initial_suspend() const noexcept { return {}; }
    auto final_suspend() noexcept
    {
        struct awaiter
        {
            promise_base* promise;

            bool await_ready() const noexcept { return false; }
            void await_suspend(std::coroutine_handle<>) const noexcept
            {
                promise->finish();
                promise->Release(); // the coroutine's own reference
            }
            void await_resume() const noexcept {}
        };
        return awaiter{this};
    }
    void unhandled_exception() noexcept
    {
        slim_lock_guard const guard(m_lock);
        m_exception = std::current_exception();
    }

    template <typename Awaitable>
    Awaitable&& await_transform(Awaitable&& awaitable)
    {
        if (Status() == AsyncStatus::Canceled)
        {
            throw hresult_canceled();
        }
        return std::forward<Awaitable>(awaitable);
    }
    cancellation_token<Derived> await_transform(get_cancellation_token_t) noexcept
    {
        return cancellation_token<Derived>(static_cast<Derived*>(this));
    }

  private:
    void objects_come_from_make() const noexcept final {} // it lives in the coroutine's frame

    // With the lock held.
    hresult failure() const noexcept
    {
        try
        {
            if (m_exception)
            {
                std::rethrow_exception(m_exception);
            }
        }
        catch (...)
        {
            return to_hresult();
        }
        return m_status.load(std::memory_order_relaxed) == AsyncStatus::Canceled ? error_canceled : error_ok;
    }

    void finish() noexcept
    {
        handler_type handler;
        AsyncStatus status{};
        {
            slim_lock_guard const guard(m_lock);
            m_finished = true;
            auto const error = failure();
            status = error == error_ok         ? AsyncStatus::Completed
                     : error == error_canceled ? AsyncStatus::Canceled
                                               : AsyncStatus::Error;
            m_status.store(status, std::memory_order_release);
            handler = std::exchange(m_handler, nullptr);
            m_cancel = nullptr;
        }
        call(handler, status);
    }

    void call(handler_type const& handler, AsyncStatus status) noexcept
    {
        if (handler)
        {
            invoke(handler, get_return_object(), status);
        }
    }

    slim_mutex m_lock;
    std::atomic<AsyncStatus> m_status{AsyncStatus::Started};
    bool m_finished{};
    bool m_handlerWasSet{};
    handler_type m_handler{nullptr};
    std::function<void()> m_cancel;
    std::exception_ptr m_exception;
};

struct action_promise final : promise_base<action_promise, Windows::Foundation::IAsyncAction>
{
    void return_void() const noexcept {}
    void result() const noexcept {}
};

template <typename TResult>
struct operation_promise final : promise_base<operation_promise<TResult>, Windows::Foundation::IAsyncOperation<TResult>>
{
    void return_value(TResult const& value) { m_result = value; }
    void return_value(TResult&& value) { m_result = std::move(value); }
    TResult result() const { return *m_result; }

  private:
    std::optional<TResult> m_result;
};

} // namespace impl

} // namespace winrt

template <typename... Arguments>
struct std::coroutine_traits<winrt::Windows::Foundation::IAsyncAction, Arguments...>
{
    using promise_type = winrt::impl::action_promise;
};

template <typename TResult, typename... Arguments>
struct std::coroutine_traits<winrt::Windows::Foundation::IAsyncOperation<TResult>, Arguments...>
{
    using promise_type = winrt::impl::operation_promise<TResult>;
};
