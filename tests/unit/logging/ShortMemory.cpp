#include "tests/unit/logging/ShortMemory.h"

#include <cstdlib>
#include <new>

namespace
{

thread_local bool isShort = false;

} // namespace

void* operator new(std::size_t size)
{
    auto* const memory = isShort ? nullptr : std::malloc(size);
    if (memory == nullptr)
    {
        throw std::bad_alloc();
    }
    return memory;
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
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

} // namespace test
