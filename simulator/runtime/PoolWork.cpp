#include "simulator/runtime/PoolWork.h"

#include "simulator/runtime/RunOnPool.h"

namespace sim
{

void PoolWork::Run(std::function<void()> function)
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

void PoolWork::Wait()
{
    std::unique_lock lock(m_mutex);
    m_ended.wait(lock, [&] { return m_count == 0; });
}

} // namespace sim
