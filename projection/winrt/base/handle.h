// Owners of system handles, and slim locks.
#pragma once
#include "winrt/base/error.h"

namespace winrt
{

// T names the handle's type, its invalid value and how to close it.
template <typename T>
struct handle_type
{
    using type = typename T::type;

    handle_type() noexcept = default;
    explicit handle_type(type value) noexcept : m_value(value) {}
    handle_type(handle_type&& other) noexcept : m_value(other.detach()) {}
    handle_type& operator=(handle_type&& other) noexcept
    {
        if (this != &other)
        {
            attach(other.detach());
        }
        return *this;
    }
    ~handle_type() noexcept { close(); }

    void close() noexcept
    {
        if (*this)
        {
            T::close(m_value);
            m_value = T::invalid();
        }
    }
    explicit operator bool() const noexcept { return m_value != T::invalid(); }
    type get() const noexcept { return m_value; }
    type* put() noexcept
    {
        close();
        return &m_value;
    }
    void attach(type value) noexcept
    {
        close();
        m_value = value;
    }
    type detach() noexcept { return std::exchange(m_value, T::invalid()); }
    friend void swap(handle_type& left, handle_type& right) noexcept { std::swap(left.m_value, right.m_value); }

  private:
    type m_value = T::invalid();
};

namespace impl
{

struct handle_traits
{
    using type = void*;
    static void close(type value) noexcept { os::CloseHandle(value); }
    static type invalid() noexcept { return nullptr; }
};
struct file_handle_traits
{
    using type = void*;
    static void close(type value) noexcept { os::CloseHandle(value); }
    static type invalid() noexcept { return reinterpret_cast<type>(intptr_t{-1}); } // INVALID_HANDLE_VALUE
};
} // namespace impl

using handle = handle_type<impl::handle_traits>;
using file_handle = handle_type<impl::file_handle_traits>;

struct slim_mutex
{
    slim_mutex() noexcept = default;
    slim_mutex(slim_mutex const&) = delete;
    slim_mutex& operator=(slim_mutex const&) = delete;

    void lock() noexcept { impl::os::AcquireSRWLockExclusive(&m_lock); }
    void unlock() noexcept { impl::os::ReleaseSRWLockExclusive(&m_lock); }
    bool try_lock() noexcept { return impl::os::TryAcquireSRWLockExclusive(&m_lock) != 0; }
    void lock_shared() noexcept { impl::os::AcquireSRWLockShared(&m_lock); }
    void unlock_shared() noexcept { impl::os::ReleaseSRWLockShared(&m_lock); }

  private:
    void* m_lock{}; // an SRWLOCK
};

struct slim_lock_guard
{
    explicit slim_lock_guard(slim_mutex& mutex) noexcept : m_mutex(mutex) { m_mutex.lock(); }
    slim_lock_guard(slim_lock_guard const&) = delete;
    slim_lock_guard& operator=(slim_lock_guard const&) = delete;
    ~slim_lock_guard() noexcept { m_mutex.unlock(); }

  private:
    slim_mutex& m_mutex;
};

struct slim_shared_lock_guard
{
    explicit slim_shared_lock_guard(slim_mutex& mutex) noexcept : m_mutex(mutex) { m_mutex.lock_shared(); }
    slim_shared_lock_guard(slim_shared_lock_guard const&) = delete;
    slim_shared_lock_guard& operator=(slim_shared_lock_guard const&) = delete;
    ~slim_shared_lock_guard() noexcept { m_mutex.unlock_shared(); }

  private:
    slim_mutex& m_mutex;
};

} // namespace winrt
