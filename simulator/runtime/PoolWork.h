#pragma once
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <mutex>
#include <utility>
#include <winrt/base.h>

namespace sim
{

// Runs a function on a thread of the system's pool, which belongs to the multi-threaded apartment. It must not throw.
inline winrt::fire_and_forget RunOnPool(std::function<void()> function)
{
    co_await winrt::resume_background();
    function();
}

// Functions that run on threads of the system's pool and can be waited for. Any thread.
class PoolWork
{
  public:
    PoolWork() = default;
    PoolWork(PoolWork const&) = delete;
    PoolWork& operator=(PoolWork const&) = delete;
    ~PoolWork() { Wait(); }

    // The function must not throw; it may block.
    void Run(std::function<void()> function)
    {
        {
            std::lock_guard const lock(m_mutex);
            ++m_count;
        }
        RunOnPool([this, function = std::move(function)]() mutable {
            function();
            function = nullptr; // what it holds goes before it counts as ended
            std::lock_guard const lock(m_mutex);
            --m_count;
            m_ended.notify_all();
        });
    }

    // Until none of them runs or waits to run. Not from within one.
    void Wait()
    {
        std::unique_lock lock(m_mutex);
        m_ended.wait(lock, [&] { return m_count == 0; });
    }

  private:
    std::mutex m_mutex; // over all that follows
    std::condition_variable m_ended;
    std::size_t m_count = 0;
};

} // namespace sim
