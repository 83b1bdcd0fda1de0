// Waiting for an asynchronous operation on the calling thread. Not for single-threaded apartments.
#pragma once

namespace winrt::impl
{

// Shared between the waiting thread and the operation, and destroyed by the last of them.
struct completion
{
    handle finished{check_pointer(os::CreateEventW(nullptr, true, false, nullptr))};

    template <typename Async>
    static std::shared_ptr<completion> of(Async const& async)
    {
        auto state = std::make_shared<completion>();
        async.Completed([state](auto const&, auto) { os::SetEvent(state->finished.get()); });
        return state;
    }
};

template <typename Async>
auto wait_get(Async const& async)
{
    if (async.Status() == Windows::Foundation::AsyncStatus::Started)
    {
        os::WaitForSingleObject(completion::of(async)->finished.get(), os::infinite);
    }
    return async.GetResults();
}

// Started at the time limit; the operation continues, and cannot be waited for a second time.
template <typename Async>
Windows::Foundation::AsyncStatus wait_status(Async const& async, Windows::Foundation::TimeSpan timeout)
{
    if (async.Status() == Windows::Foundation::AsyncStatus::Started)
    {
        auto const milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(timeout).count();
        os::WaitForSingleObject(completion::of(async)->finished.get(), static_cast<uint32_t>(milliseconds));
    }
    return async.Status();
}

template <typename D>
auto consume<D, Windows::Foundation::IAsyncAction>::get() const
{
    return wait_get<Windows::Foundation::IAsyncAction>(static_cast<D const&>(*this));
}
template <typename D>
auto consume<D, Windows::Foundation::IAsyncAction>::wait_for(Windows::Foundation::TimeSpan const& timeout) const
{
    return wait_status<Windows::Foundation::IAsyncAction>(static_cast<D const&>(*this), timeout);
}
template <typename D, typename TResult>
auto consume<D, Windows::Foundation::IAsyncOperation<TResult>>::get() const
{
    return wait_get<Windows::Foundation::IAsyncOperation<TResult>>(static_cast<D const&>(*this));
}
template <typename D, typename TResult>
auto consume<D, Windows::Foundation::IAsyncOperation<TResult>>::wait_for(
    Windows::Foundation::TimeSpan const& timeout) const
{
    return wait_status<Windows::Foundation::IAsyncOperation<TResult>>(static_cast<D const&>(*this), timeout);
}

} // namespace winrt::impl
