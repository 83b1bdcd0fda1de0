#pragma once
#include "simulator/protocol/Messages.h"
#include "simulator/runtime/PoolWork.h"

#include <compare>
#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <variant>

namespace sim
{

class Host;

// What of a process the platform speaks to: one end of a connection, or a task instance.
struct Address
{
    enum class Kind
    {
        CallerEnd,
        ServiceEnd,
        Instance
    };

    Kind kind;
    std::uint32_t number;

    auto operator<=>(Address const&) const = default;

    static constexpr Address Of(ConnectionEnd end, std::uint32_t connection) noexcept
    {
        return {end == ConnectionEnd::Caller ? Kind::CallerEnd : Kind::ServiceEnd, connection};
    }
};

// Brings what the platform says to its receivers, on threads of the system's pool: one message after the other for each
// queue, and side by side otherwise. A queue is that of an address; what is said of an app service's task keeps its
// order among the messages to the service's end of the connection. The next message comes when the receiver has
// returned or has called ReleaseQueue, so that a handler that blocks before that holds up its own connection alone. Any
// thread.
class MessageRouter
{
  public:
    using Message = std::variant<RequestArrived, OtherEndClosed, TaskCancelled, TaskEnded>;

    // May block, as the app's handlers may.
    using Receiver = std::function<void(Message const&)>;

    // host: receivers run in its scope. work: outlives this.
    MessageRouter(Host& host, PoolWork& work) : m_host(host), m_work(work) {}

    MessageRouter(MessageRouter const&) = delete;
    MessageRouter& operator=(MessageRouter const&) = delete;

    // Closes it.
    ~MessageRouter();

    void AddReceiver(Address address, Receiver receiver);
    void RemoveReceiver(Address address);

    // As long as it lives, a connection is being opened, whose address is not known yet: what comes for an address that
    // is not there may be for that one, and waits.
    class OpeningScope
    {
      public:
        explicit OpeningScope(MessageRouter& router);
        OpeningScope(OpeningScope const&) = delete;
        OpeningScope& operator=(OpeningScope const&) = delete;
        ~OpeningScope();

      private:
        MessageRouter& m_router;
    };

    // Never blocks. A message without a receiver is dropped.
    void Add(Message message);

    // Called in a receiver, on its thread: the next message of the same queue need not wait for its return. Does
    // nothing on other threads.
    static void ReleaseQueue();

    // Runs a function on the system's pool, in the host's scope.
    void Run(std::function<void()> function);

    // Drops all receivers and what still waits, and returns when the last receiver has returned.
    void Close();

  private:
    // The right to deliver from a queue, while a message of it is being delivered.
    class Turn;

    void DeliverNext(Address queue);
    Receiver WaitForReceiver(Address address);

    Host& m_host;
    PoolWork& m_work;
    std::mutex m_mutex; // over all that follows
    std::condition_variable m_changed;
    std::map<Address, Receiver> m_receivers;
    std::map<Address, std::deque<Message>> m_waiting; // by queue; there as long as one is being delivered
    unsigned m_openings = 0;
    bool m_isClosed = false;
};

} // namespace sim
