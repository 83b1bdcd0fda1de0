#include "tests/support/ShortMemory.h"

#include <cstdlib>
#include <new>

namespace
{

thread_local bool isShort = false;
thread_local int untilShortMoment = -1; // negative: none to come
thread_local std::ptrdiff_t heldBlocks = 0;

void Release(void* memory) noexcept
{
    heldBlocks -= memory != nullptr ? 1 : 0;
    std::free(memory);
}

} // namespace

void* operator new(std::size_t size)
{
    auto const isRefused = isShort || (untilShortMoment >= 0 && untilShortMoment-- == 0);
    auto* const memory = isRefused ? nullptr : std::malloc(size);
    if (memory == nullptr)
    {
        throw std::bad_alloc();
    }
    ++heldBlocks;
    return memory;
}

void operator delete(void* memory) noexcept
{
    Release(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    Release(memory);
}

namespace test
{

ShortMemory::ShortMemory() noexcept
{
    isShort = true;
}

ShortMemory::~ShortMemory()
{
    isShort = false;
}

ShortMoment::ShortMoment(int allocationsBefore) noexcept
{
    untilShortMoment = allocationsBefore;
}

ShortMoment::~ShortMoment()
{
    untilShortMoment = -1;
}

bool ShortMoment::HasPassed() const noexcept
{
    return untilShortMoment < 0;
}

std::ptrdiff_t HeldBlocks() noexcept
{
    return heldBlocks;
}

} // namespace test
