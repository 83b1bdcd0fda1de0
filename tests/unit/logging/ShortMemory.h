#pragma once

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

} // namespace test
