#pragma once
#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

namespace fuzz
{

using Input = std::vector<std::uint8_t>;

// The same numbers from the same seed.
class Noise
{
  public:
    explicit Noise(std::uint64_t seed) : m_engine(seed) {}

    // 0 to count - 1.
    std::size_t Below(std::size_t count) { return static_cast<std::size_t>(m_engine() % count); }

  private:
    std::mt19937_64 m_engine;
};

// An input changed in a few places, not longer than that; parts may come from another one.
Input Mutated(Noise& noise, Input const& base, Input const& other, std::size_t longest);

} // namespace fuzz
