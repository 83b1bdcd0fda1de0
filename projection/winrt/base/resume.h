// Where coroutines resume: on the thread pool, or in the apartment they came from.
#pragma once
#include "winrt/base/events.h"

namespace winrt
{

namespace impl
{

inline void __stdcall resume_callback(void*, void* context) noexcept
{
    std::coroutine_handle<>::from_address(context)();
}

inline void resume_on_pool(std::coroutine_handle<> coroutine)
{
    check_bool(os::TrySubmitThreadpoolCallback(resume_callback, coroutine.address(), nullptr));
}

// The system's IContextCallback: calls a function inside an apartment.
struct context_call_data
{
    uint32_t one;
    uint32_t two;
    void* data;
};

struct IContextCallback : unknown_abi
{
    virtual int32_t __stdcall ContextCallback(int32_t(__stdcall* callback)(context_call_data*), context_call_data* data,
                                              guid const& id, int method, void* reserved) noexcept = 0;
};

template <>
struct category<IContextCallback>
{
    using type = interface_category;
};
template <>
inline constexpr guid guid_v<IContextCallback>{"000001DA-0000-0000-C000-000000000046"};

// Documented as ICallbackWithNoReentrancyToApplicationSTA: a view's thread does not take other calls meanwhile.
inline constexpr guid callback_without_reentrancy{"0A299774-3E4E-FC42-1D9D-72CEE105CA57"};

// The apartment of the thread that makes it; empty on a thread without one.
class calling_apartment
{
  public:
    calling_apartment() noexcept
    {
        m_context.try_capture(os::CoGetObjectContext);
        int32_t qualifier{};
        os::CoGetApartmentType(&m_type, &qualifier);
    }

    // Resumes the coroutine in this apartment. When the apartment cannot be reached, the coroutine goes on here and
    // learns why from the failure, which is written before it does.
    void resume(std::coroutine_handle<> coroutine, int32_t& failure) const noexcept
    {
        calling_apartment const current;
        if (!m_context || m_context == current.m_context)
        {
            coroutine();
        }
        else if (m_type == os::multi_threaded_type)
        {
            current.m_type == os::multi_threaded_type ? coroutine() : resume_outside(coroutine, failure);
        }
        else
        {
            resume_inside(coroutine, failure);
        }
    }

  private:
    static int32_t __stdcall call(context_call_data* data) noexcept
    {
        std::coroutine_handle<>::from_address(data->data)();
        return error_ok;
    }

    static void resume_outside(std::coroutine_handle<> coroutine, int32_t& failure) noexcept
    try
    {
        resume_on_pool(coroutine);
    }
    catch (...)
    {
        failure = to_hresult();
        coroutine();
    }

    void resume_inside(std::coroutine_handle<> coroutine, int32_t& failure) const noexcept
    {
        // The coroutine may end, and this object with it, before the call returns.
        auto const context = m_context;
        context_call_data data{0, 0, coroutine.address()};
        constexpr int anyMethod = 5;
        auto const result = context->ContextCallback(call, &data, callback_without_reentrancy, anyMethod, nullptr);
        if (result < 0)
        {
            failure = result;
            coroutine();
        }
    }

    com_ptr<IContextCallback> m_context;
    int32_t m_type{os::no_apartment_type};
};

} // namespace impl

// co_await resume_background(): resumes on the thread pool.
[[nodiscard]] inline auto resume_background() noexcept
{
    struct awaiter
    {
        bool await_ready() const noexcept { return false; }
        void await_suspend(std::coroutine_handle<> coroutine) const { impl::resume_on_pool(coroutine); }
        void await_resume() const noexcept {}
    };
    return awaiter();
}

// co_await an apartment_context made earlier: goes back to the apartment in which it was made.
struct apartment_context
{
    bool await_ready() const noexcept { return false; }
    void await_suspend(std::coroutine_handle<> coroutine) noexcept
    {
        auto const apartment = m_apartment;
        apartment.resume(coroutine, m_failure);
    }
    void await_resume() const { check_hresult(m_failure); }

  private:
    impl::calling_apartment m_apartment;
    int32_t m_failure{};
};

// A coroutine without a result to wait for. An exception that leaves it ends the process.
struct fire_and_forget
{
    struct promise_type
    {
        fire_and_forget get_return_object() const noexcept { return {}; }
        void return_void() const noexcept {}
        std::suspend_never initial_suspend() const noexcept { return {}; }
        std::suspend_never final_suspend() const noexcept { return {}; }
        [[noreturn]] void unhandled_exception() const noexcept { terminate(); }
    };
};

} // namespace winrt
