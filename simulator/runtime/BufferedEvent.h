#pragma once
#include "simulator/runtime/CurrentHost.h"

#include <functional>
#include <mutex>
#include <utility>
#include <vector>
#include <winrt/base.h>

namespace sim
{

// An event of Owner. What is raised before the first handler is added waits for it. Any thread.
template <typename Owner, typename Delegate>
class BufferedEvent
{
  public:
    // Raises the event by calling Call.
    using Raise = std::function<void(Owner&)>;

    // What has waited is raised now, in its order, on a thread of the system's pool. Throws hresult_error E_INVALIDARG
    // for null.
    winrt::event_token Add(Delegate const& handler, Owner& owner)
    {
        if (!handler)
        {
            throw winrt::hresult_invalid_argument();
        }
        std::lock_guard const lock(m_mutex);
        auto const token = m_event.add(handler);
        if (!m_waiting.empty())
        {
            if (auto const host = m_host.Get())
            {
                host->Router().Run([owner = owner.get_strong(), waiting = std::exchange(m_waiting, {})] {
                    for (auto const& raise : waiting)
                    {
                        raise(*owner);
                    }
                });
            }
        }
        return token;
    }

    void Remove(winrt::event_token token) { m_event.remove(token); }

    // Removes all handlers and what waits.
    void Clear()
    {
        m_event.clear();
        std::lock_guard const lock(m_mutex);
        m_waiting.clear();
    }

    bool HasHandlers() const { return static_cast<bool>(m_event); }

    // Raises it at once when there is a handler.
    void RaiseOrWait(Owner& owner, Raise raise)
    {
        {
            std::lock_guard const lock(m_mutex);
            if (!m_event)
            {
                m_waiting.push_back(std::move(raise));
                return;
            }
        }
        raise(owner);
    }

    // Calls the handlers on this thread. Their exceptions do not propagate.
    template <typename... Arguments>
    void Call(Arguments const&... arguments)
    {
        m_event(arguments...);
    }

  private:
    HostReference m_host;
    std::mutex m_mutex; // over what waits
    std::vector<Raise> m_waiting;
    winrt::event<Delegate> m_event;
};

} // namespace sim
