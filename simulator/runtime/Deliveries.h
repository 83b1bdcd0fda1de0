#pragma once
#include "simulator/runtime/PoolWork.h"
#include "simulator/transport/Message.h"

#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <string>

namespace sim
{

// Brings what the platform says to a process's listener, on threads of the system's pool: one message after the other
// for each address, and side by side otherwise, so that a handler that blocks holds up its own connection alone. May be
// used from any thread.
class Deliveries
{
  public:
    using Listener = std::function<void(Message const&)>;

    // work: its owner's, outlives this.
    explicit Deliveries(PoolWork& work) : m_work(work) {}

    Deliveries(Deliveries const&) = delete;
    Deliveries& operator=(Deliveries const&) = delete;

    // Waits for all of `work`, so for what is being delivered; what still waits is lost.
    ~Deliveries();

    // Once, before the first Add. The listener may block.
    void Listen(Listener listener);

    // Never blocks.
    void Add(Message message);

  private:
    void DeliverFrom(std::wstring const& address);

    PoolWork& m_work;
    std::mutex m_mutex; // over all that follows
    Listener m_listener;
    std::map<std::wstring, std::deque<Message>> m_waiting; // by address; there as long as one is being delivered
};

} // namespace sim
