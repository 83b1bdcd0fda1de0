#pragma once
#include <cstddef>

namespace test
{

// While it lives, memory is short for this thread: operator new throws.
class ShortMemory
{
  public:
    ShortMemory() noexcept;
    ShortMemory(ShortMemory const&) = delete;
    ShortMemory& operator=(ShortMemory const&) = delete;
    ~ShortMemory();
};

// While it lives, one allocation of this thread fails: the first after so many others.
class ShortMoment
{
  public:
    explicit ShortMoment(int allocationsBefore) noexcept;
    ShortMoment(ShortMoment const&) = delete;
    ShortMoment& operator=(ShortMoment const&) = delete;
    ~ShortMoment();

    bool HasPassed() const noexcept;
};

// The blocks of memory that this thread has got from operator new, less those that it has given back.
std::ptrdiff_t HeldBlocks() noexcept;

} // namespace test
