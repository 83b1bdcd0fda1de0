#pragma once
#include "simulator/model/Handle.h"
#include "simulator/transport/Message.h"

#include <deque>
#include <mutex>
#include <optional>

namespace sim
{

// Messages from other threads, waiting to be taken by one.
class Inbox
{
  public:
    Inbox();

    void Add(Message message);

    // No more will come.
    void End();

    // Signalled while there is a message, or for ever once the end has come.
    HANDLE Arrived() const noexcept { return m_arrived.Get(); }

    std::optional<Message> Take();

    bool HasEnded() const;

  private:
    Handle m_arrived;
    mutable std::mutex m_mutex;
    std::deque<Message> m_messages;
    bool m_hasEnded = false;
};

} // namespace sim
