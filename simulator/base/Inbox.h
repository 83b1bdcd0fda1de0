#pragma once
#include "simulator/base/Handle.h"

#include <deque>
#include <mutex>
#include <optional>

namespace sim
{

// A queue from any threads to one.
template <typename Item>
class Inbox
{
  public:
    Inbox() : m_arrived(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {}

    void Add(Item item)
    {
        std::lock_guard const lock(m_mutex);
        m_items.push_back(std::move(item));
        SetEvent(m_arrived.Get());
    }

    // No item follows.
    void End()
    {
        std::lock_guard const lock(m_mutex);
        m_hasEnded = true;
        SetEvent(m_arrived.Get());
    }

    // Signalled while there is an item, and from End on.
    HANDLE Arrived() const noexcept { return m_arrived.Get(); }

    std::optional<Item> Take()
    {
        std::lock_guard const lock(m_mutex);
        if (m_items.empty())
        {
            return std::nullopt;
        }
        std::optional<Item> item = std::move(m_items.front());
        m_items.pop_front();
        if (m_items.empty() && !m_hasEnded)
        {
            ResetEvent(m_arrived.Get());
        }
        return item;
    }

    bool HasEnded() const
    {
        std::lock_guard const lock(m_mutex);
        return m_hasEnded && m_items.empty();
    }

  private:
    Handle m_arrived;
    mutable std::mutex m_mutex;
    std::deque<Item> m_items;
    bool m_hasEnded = false;
};

} // namespace sim
