#pragma once
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <mutex>

namespace sim
{

// Functions that run on threads of the system's pool, which belong to the multi-threaded apartment, and can be waited
// for. May be used from any thread.
class PoolWork
{
  public:
    PoolWork() = default;
    PoolWork(PoolWork const&) = delete;
    PoolWork& operator=(PoolWork const&) = delete;
    ~PoolWork() { Wait(); }

    // The function must not throw; it may block.
    void Run(std::function<void()> function);

    // Until none of them runs or waits to run. Not from within one.
    void Wait();

  private:
    std::mutex m_mutex; // over all that follows
    std::condition_variable m_ended;
    std::size_t m_count = 0;
};

} // namespace sim
