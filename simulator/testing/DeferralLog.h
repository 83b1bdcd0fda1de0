#pragma once
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace sim
{

// How often the deferrals of each request to the app were completed. Any thread may use it.
class DeferralLog
{
  public:
    void Taken(std::uint32_t request);
    void Completed(std::uint32_t request);

    // In the order in which the requests arrived.
    std::vector<unsigned> All() const;

    // Waits until the deferral of that request, counted from 0, was completed that often.
    void WaitFor(std::size_t request, unsigned count) const;

  private:
    mutable std::mutex m_mutex; // over all that follows
    mutable std::condition_variable m_changed;
    std::map<std::uint32_t, std::size_t> m_positions;
    std::vector<unsigned> m_counts;
};

} // namespace sim
