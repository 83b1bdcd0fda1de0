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
// for each queue (QueueOf), and side by side otherwise. The next one comes when the listener has returned or has said
// PassOn, so that a handler that blocks before that holds up its own connection alone. May be used from any thread.
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

    // Called in a listener, on its thread: the next message of the same queue need not wait for its return. Does
    // nothing on other threads.
    static void PassOn();

  private:
    // The right to deliver from a queue, while a message of it is being delivered.
    class Turn;

    void DeliverNext(std::wstring const& queueName);

    PoolWork& m_work;
    std::mutex m_mutex; // over all that follows
    Listener m_listener;
    std::map<std::wstring, std::deque<Message>> m_waiting; // by queue; there as long as one is being delivered
};

} // namespace sim
