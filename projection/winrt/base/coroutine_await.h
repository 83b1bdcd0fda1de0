// co_await on asynchronous operations of the platform.
#pragma once

namespace winrt::impl
{

template <typename T>
struct is_async : std::false_type
{
};
template <>
struct is_async<Windows::Foundation::IAsyncAction> : std::true_type
{
};
template <typename TResult>
struct is_async<Windows::Foundation::IAsyncOperation<TResult>> : std::true_type
{
};

struct no_apartment
{
};

template <typename Async, bool KeepApartment>
class async_awaiter
{
  public:
    explicit async_awaiter(Async const& async) : m_async(async) {}

    bool await_ready() const noexcept { return false; }

    // False when the operation has ended already: the coroutine goes on at once, where it is, without growing the
    // stack.
    bool await_suspend(std::coroutine_handle<> coroutine)
    {
        m_suspending.store(true, std::memory_order_relaxed);
        m_async.Completed(completion_handler(this, coroutine));
        return m_suspending.exchange(false, std::memory_order_acq_rel);
    }

    // Throws hresult_canceled when the operation was canceled, and its error when it failed.
    decltype(auto) await_resume() const
    {
        check_hresult(m_failure);
        if (m_status == Windows::Foundation::AsyncStatus::Canceled)
        {
            throw hresult_canceled();
        }
        return m_async.GetResults();
    }

  private:
    // Resumes the coroutine when the operation ends, or when the operation lets go of it without having ended: the
    // coroutine then sees the failure instead of waiting for ever.
    class completion_handler
    {
      public:
        completion_handler(async_awaiter* awaiter, std::coroutine_handle<> coroutine) noexcept
            : m_awaiter(awaiter), m_coroutine(coroutine)
        {
        }
        completion_handler(completion_handler&& other) noexcept
            : m_awaiter(other.m_awaiter), m_coroutine(std::exchange(other.m_coroutine, nullptr))
        {
        }
        ~completion_handler() noexcept
        {
            if (m_coroutine)
            {
                m_awaiter->m_failure = error_disconnected;
                m_awaiter->resume(m_coroutine);
            }
        }
        void operator()(Async const&, Windows::Foundation::AsyncStatus status) noexcept
        {
            m_awaiter->m_status = status;
            m_awaiter->resume(std::exchange(m_coroutine, nullptr));
        }

      private:
        async_awaiter* m_awaiter;
        std::coroutine_handle<> m_coroutine;
    };

    void resume(std::coroutine_handle<> coroutine) noexcept
    {
        if (m_suspending.exchange(false, std::memory_order_acq_rel))
        {
            return; // the waiting thread is still in await_suspend, which goes on itself, or raises why it cannot wait
        }
        if constexpr (KeepApartment)
        {
            auto const apartment = m_apartment; // the coroutine may end, and this object with it
            apartment.resume(coroutine, m_failure);
        }
        else
        {
            coroutine();
        }
    }

    Async const m_async;
    Windows::Foundation::AsyncStatus m_status{Windows::Foundation::AsyncStatus::Started};
    int32_t m_failure{};
    std::atomic<bool> m_suspending{false};
    [[no_unique_address]] std::conditional_t<KeepApartment, calling_apartment, no_apartment> m_apartment;
};

// What resume_agile gives. GCC 12 moves what a promise passes on, which an awaiter does not bear.
template <typename Async>
struct agile_wait
{
    Async async;

    auto operator co_await() const { return async_awaiter<Async, false>(async); }
};

} // namespace winrt::impl

namespace winrt
{

// co_await resume_agile(operation): goes on on whatever thread the operation ended on, instead of in the apartment
// that waited. The way to wait from a single-threaded apartment whose thread is busy.
template <typename Async>
    requires impl::is_async<Async>::value
[[nodiscard]] auto resume_agile(Async const& async)
{
    return impl::agile_wait<Async>{async};
}

namespace Windows::Foundation
{

template <typename Async>
    requires winrt::impl::is_async<Async>::value
auto operator co_await(Async const& async)
{
    return winrt::impl::async_awaiter<Async, true>(async);
}

} // namespace Windows::Foundation

} // namespace winrt
