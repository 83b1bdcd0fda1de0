#include "simulator/runtime/DeferralCounts.h"

#include "simulator/runtime/LimitedWait.h"

namespace sim
{

void DeferralCounts::Taken(std::wstring const& request)
{
    std::lock_guard const lock(m_mutex);
    if (m_positions.try_emplace(request, m_counts.size()).second)
    {
        m_counts.push_back(0);
    }
}

void DeferralCounts::Completed(std::wstring const& request)
{
    std::lock_guard const lock(m_mutex);
    ++m_counts[m_positions.at(request)];
    m_changed.notify_all();
}

std::vector<unsigned> DeferralCounts::All() const
{
    std::lock_guard const lock(m_mutex);
    return m_counts;
}

void DeferralCounts::WaitFor(std::size_t request, unsigned count) const
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
