#include "simulator/testing/DeferralLog.h"

#include "simulator/testing/LimitedWait.h"

namespace sim
{

void DeferralLog::Taken(std::uint32_t request)
{
    std::lock_guard const lock(m_mutex);
    if (m_positions.try_emplace(request, m_counts.size()).second)
    {
        m_counts.push_back(0);
    }
}

void DeferralLog::Completed(std::uint32_t request)
{
    std::lock_guard const lock(m_mutex);
    ++m_counts[m_positions.at(request)];
    m_changed.notify_all();
}

std::vector<unsigned> DeferralLog::All() const
{
    std::lock_guard const lock(m_mutex);
    return m_counts;
}

void DeferralLog::WaitFor(std::size_t request, unsigned count) const
{
    std::unique_lock lock(m_mutex);
    WaitLimited(
        lock, m_changed, [&] { return request < m_counts.size() && m_counts[request] >= count; },
        [&] {
            return L"completion " + std::to_wstring(count) + L" of request " + std::to_wstring(request) + L" of " +
                   std::to_wstring(m_counts.size());
        });
}

} // namespace sim
