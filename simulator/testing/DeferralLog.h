#pragma once
#include <cstddef>
#include <cstdint>
#include <map>
#include <mutex>
#include <vector>

namespace sim
{

// How often the deferrals of each request to the app were completed. Any thread may use it.
class DeferralLog
{
  public:
    void Taken(std::uint32_t request)
    {
        std::lock_guard const lock(m_mutex);
        if (m_positions.try_emplace(request, m_counts.size()).second)
        {
            m_counts.push_back(0);
        }
    }

    void Completed(std::uint32_t request)
    {
        std::lock_guard const lock(m_mutex);
        ++m_counts[m_positions.at(request)];
    }

    // In the order in which the requests arrived.
    std::vector<unsigned> All() const
    {
        std::lock_guard const lock(m_mutex);
        return m_counts;
    }

  private:
    mutable std::mutex m_mutex; // guards all that follows
    std::map<std::uint32_t, std::size_t> m_positions;
    std::vector<unsigned> m_counts;
};

} // namespace sim
