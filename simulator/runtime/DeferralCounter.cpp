#include "simulator/runtime/DeferralCounter.h"

#include <utility>

namespace sim
{

void DeferralCounter::Take()
{
    std::lock_guard const lock(m_mutex);
    ++m_unfinished;
}

void DeferralCounter::Finish()
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
