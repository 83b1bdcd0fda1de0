// winrt::event, the list behind an event of an implementation, and revokers for those who subscribe.
#pragma once
#include "winrt/base/delegate.h"
#include "winrt/base/handle.h"

namespace winrt
{

// Handlers are called outside the lock, from a snapshot: one removed during a raise may still get that raise, one
// added gets the next. Adding, removing and raising may happen on any threads.
template <typename Delegate>
struct event
{
    using delegate_type = Delegate;

    event() = default;
    event(event const&) = delete;
    event& operator=(event const&) = delete;

    explicit operator bool() const noexcept { return static_cast<bool>(snapshot()); }

    event_token add(Delegate const& handler)
    {
        auto agile = impl::make_agile_delegate(handler);
        targets old; // released after the lock
        slim_lock_guard const guard(m_lock);
        auto const token = event_token{++m_last};
        auto grown = m_targets ? std::make_shared<list>(*m_targets) : std::make_shared<list>();
        grown->push_back({token, std::move(agile)});
        old = std::exchange(m_targets, std::move(grown));
        return token;
    }

    // An unknown token is ignored.
    void remove(event_token token)
    {
        targets old; // released after the lock: a handler's destructor may come back here
        slim_lock_guard const guard(m_lock);
        if (!m_targets)
        {
            return;
        }
        auto rest = std::make_shared<list>();
        for (auto const& target : *m_targets)
        {
            if (target.token != token)
            {
                rest->push_back(target);
            }
        }
        old = std::exchange(m_targets, rest->empty() ? nullptr : std::move(rest));
    }

    void clear() noexcept
    {
        targets old;
        slim_lock_guard const guard(m_lock);
        old = std::exchange(m_targets, nullptr);
    }

    template <typename... Arguments>
    void operator()(Arguments const&... arguments)
    {
        auto const current = snapshot();
        if (!current)
        {
            return;
        }
        for (auto const& target : *current)
        {
            if (!impl::invoke(target.handler, arguments...))
            {
                remove(target.token);
            }
        }
    }

  private:
    struct entry
    {
        event_token token;
        Delegate handler;
    };
    using list = std::vector<entry>;
    using targets = std::shared_ptr<list const>;

    targets snapshot() const noexcept
    {
        slim_lock_guard const guard(m_lock);
        return m_targets;
    }

    mutable slim_mutex m_lock;
    targets m_targets;
    int64_t m_last{};
};

struct auto_revoke_t
{
};
inline constexpr auto_revoke_t auto_revoke{};

namespace impl
{

// Removes a handler when it goes out of scope. Reference is weak_ref<I> for events of objects, I for static events.
template <typename I, auto Remove, typename Reference>
struct revoker
{
    revoker() noexcept = default;
    revoker(I const& object, event_token token) : m_object(object), m_token(token) {}
    revoker(revoker&& other) noexcept
        : m_object(std::exchange(other.m_object, nullptr)), m_token(std::exchange(other.m_token, event_token{}))
    {
    }
    revoker& operator=(revoker&& other) noexcept
    {
        if (this != &other)
        {
            revoke();
            m_object = std::exchange(other.m_object, nullptr);
            m_token = std::exchange(other.m_token, event_token{});
        }
        return *this;
    }
    ~revoker() noexcept { revoke(); }

    explicit operator bool() const noexcept { return static_cast<bool>(m_object); }
    void revoke() noexcept
    {
        if (auto const object = target())
        {
            static_cast<void>((static_cast<typename abi<I>::type*>(get_abi(object))->*Remove)(m_token));
        }
        m_object = nullptr;
    }

  private:
    I target() const noexcept
    {
        if constexpr (std::is_same_v<Reference, I>)
        {
            return m_object;
        }
        else
        {
            return m_object.get();
        }
    }

    Reference m_object{nullptr};
    event_token m_token{};
};

template <typename I, auto Remove>
using event_revoker = revoker<I, Remove, weak_ref<I>>;
template <typename I, auto Remove>
using factory_event_revoker = revoker<I, Remove, I>;

template <typename D, typename Revoker, typename I>
Revoker make_event_revoker(I const& object, event_token token)
{
    return Revoker(object, token);
}

} // namespace impl

} // namespace winrt
