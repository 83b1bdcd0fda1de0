#pragma once
#include "simulator/runtime/PoolWork.h"
#include "simulator/transport/Message.h"

#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>
#include <string>

namespace sim
{

// What of this process the platform speaks to: ends of connections and running tasks, by their addresses. Used from any
// thread.
class Receivers
{
  public:
    // May block, as the app's handlers may.
    using Receive = std::function<void(Message const&)>;

    static Receivers& Instance();

    // For a new host.
    void Open();

    // The host is about to go: all receivers are dropped, and what they do beside the deliveries is waited for.
    void Close();

    void Add(std::wstring const& address, Receive receive);
    void Remove(std::wstring const& address);

    // As long as it lives, a connection is being opened, whose address is not known yet: what comes for an address that
    // is not there may be for that one, and waits.
    class Opening
    {
      public:
        Opening();
        Opening(Opening const&) = delete;
        Opening& operator=(Opening const&) = delete;
        ~Opening();
    };

    // Brings a message to its receiver. What is for nobody is dropped: its receiver has just gone.
    void Deliver(Message const& message);

    // Runs a function on the system's pool.
    void Run(std::function<void()> function);

  private:
    std::mutex m_mutex; // over all that follows
    std::condition_variable m_changed;
    std::map<std::wstring, Receive> m_receivers;
    unsigned m_openings = 0;
    bool m_isOpen = false;
    PoolWork m_work;
};

} // namespace sim
