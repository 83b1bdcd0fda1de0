#include "explore/log/Kernel.h"

#include <algorithm>

namespace explore
{

HANDLE Kernel::Add(std::shared_ptr<KernelObject> object)
{
    m_lastHandle += 4;
    // NOLINTNEXTLINE(performance-no-int-to-ptr): a handle is a number, and nothing is read through it
    auto* const handle = reinterpret_cast<HANDLE>(m_lastHandle);
    m_handles[handle] = {m_current, std::move(object)};
    return handle;
}

bool Kernel::Close(HANDLE handle)
{
    return Find<KernelObject>(handle) != nullptr && m_handles.erase(handle) == 1;
}

void Kernel::CloseAllOf(ProcessNumber process)
{
    std::erase_if(m_handles, [&](auto const& handle) { return handle.second.owner == process; });
}

std::size_t Kernel::HandlesOf(ProcessNumber process) const
{
    return static_cast<std::size_t>(
        std::ranges::count_if(m_handles, [&](auto const& handle) { return handle.second.owner == process; }));
}

std::uint64_t Kernel::StateHash() const
{
    Hash hash;
    for (auto const& history : m_histories)
    {
        hash.Add(history.Value());
    }
    return hash.Value();
}

} // namespace explore
