#pragma once
#include <cstddef>

namespace test
{

// Makes operator new fail on this thread while it exists.
class ShortMemory
{
  public:
    ShortMemory() noexcept;
    ShortMemory(ShortMemory const&) = delete;
    ShortMemory& operator=(ShortMemory const&) = delete;
    ~ShortMemory();
};

// Makes one allocation of this thread fail, after a number of others.
class ShortMoment
{
  public:
    explicit ShortMoment(int allocationsBefore) noexcept;
    ShortMoment(ShortMoment const&) = delete;
    ShortMoment& operator=(ShortMoment const&) = delete;
    ~ShortMoment();

    bool HasPassed() const noexcept;
};

// The number of blocks that this thread has allocated by operator new and not freed.
std::ptrdiff_t HeldBlocks() noexcept;

} // namespace test
