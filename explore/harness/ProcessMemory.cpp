#include "explore/harness/ProcessMemory.h"

#include <cstddef>
#include <cstdlib>
#include <new>
#include <utility>

namespace explore
{

namespace
{

constexpr std::size_t size = std::size_t{16} << 20;
alignas(std::max_align_t) std::byte store[size]; // much more than a play needs
std::size_t used = 0;
bool isProcess = false;

bool IsOfProcess(void const* pointer) noexcept
{
    return pointer >= store && pointer < store + size;
}

void* TakeForProcess(std::size_t bytes)
{
    constexpr auto alignment = alignof(std::max_align_t);
    auto const rounded = (bytes + alignment - 1) / alignment * alignment;
    if (rounded > size - used)
    {
        throw std::bad_alloc();
    }
    return store + std::exchange(used, used + rounded);
}

} // namespace

void ProcessMemory::Reset() noexcept
{
    used = 0;
}

AsProcess::AsProcess() noexcept : m_before(std::exchange(isProcess, true)) {}

AsProcess::~AsProcess()
{
    isProcess = m_before;
}

AsSystem::AsSystem() noexcept : m_before(std::exchange(isProcess, false)) {}

AsSystem::~AsSystem()
{
    isProcess = m_before;
}

} // namespace explore

void* operator new(std::size_t bytes)
{
    if (explore::isProcess)
    {
        return explore::TakeForProcess(bytes);
    }
    auto* const pointer = std::malloc(bytes != 0 ? bytes : 1); // NOLINT(cppcoreguidelines-no-malloc): this is new
    if (pointer == nullptr)
    {
        throw std::bad_alloc();
    }
    return pointer;
}

void operator delete(void* pointer) noexcept
{
    if (!explore::IsOfProcess(pointer))
    {
        std::free(pointer); // NOLINT(cppcoreguidelines-no-malloc)
    }
}

void operator delete(void* pointer, std::size_t) noexcept // NOLINT(misc-use-internal-linkage): the program's own
{
    operator delete(pointer);
}
