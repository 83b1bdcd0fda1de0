#pragma once
#include <cstdint>

namespace explore
{

// Numbers that depend on the seed alone, unlike those of the standard library's distributions. (SplitMix64.)
class Random
{
  public:
    explicit Random(std::uint64_t seed) noexcept : m_state(seed) {}

    std::uint64_t Next() noexcept
    {
        auto value = m_state += 0x9E3779B97F4A7C15;
        value = (value ^ (value >> 30)) * 0xBF58476D1CE4E5B9;
        value = (value ^ (value >> 27)) * 0x94D049BB133111EB;
        return value ^ (value >> 31);
    }

    // From 0 up to, not including, `end`. The bias is far below what a play could notice.
    std::uint64_t Below(std::uint64_t end) noexcept { return Next() % end; }

  private:
    std::uint64_t m_state;
};

} // namespace explore
