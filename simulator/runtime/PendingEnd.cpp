#include "simulator/runtime/PendingEnd.h"

#include <utility>

namespace sim
{

void PendingEnd::Take()
{
    std::lock_guard const lock(m_mutex);
    ++m_unfinished;
}

void PendingEnd::Finish()
{
    std::function<void()> ended;
    {
        std::lock_guard const lock(m_mutex);
        if (--m_unfinished == 0)
        {
            ended = std::exchange(m_ended, nullptr);
        }
    }
    if (ended)
    {
        ended();
    }
}

} // namespace sim
