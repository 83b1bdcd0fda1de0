#pragma once
#include "simulator/platform/TimeSource.h"

#include <atomic>

// Time that passes when the test says so.
class ManualTime : public sim::TimeSource
{
  public:
    std::int64_t Utc() const override { return start + static_cast<std::int64_t>(m_ticks) * 10'000; }

    std::uint64_t Ticks() const override { return m_ticks; }

    void Advance(unsigned milliseconds) { m_ticks += milliseconds; }

  private:
    static constexpr std::int64_t start = 133'489'512'000'000'000; // 2024-01-05 12:00:00

    std::atomic<std::uint64_t> m_ticks = 1'000;
};
