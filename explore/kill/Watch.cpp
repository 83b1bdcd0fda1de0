#include "explore/kill/Watch.h"

#include "simulator/base/Error.h"

#include <algorithm>

namespace explore::kill
{

Watch::Watch(std::wstring const& name)
    : m_section(CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, sizeof(Watched), name.c_str())),
      m_time(CreateEventW(nullptr, TRUE, FALSE, (name + timeSuffix).c_str())),
      m_watched(m_section
                    ? static_cast<Watched*>(MapViewOfFile(m_section.Get(), FILE_MAP_ALL_ACCESS, 0, 0, sizeof(Watched)))
                    : nullptr)
{
    if (m_watched == nullptr || !m_time)
    {
        throw sim::Error(L"there is no memory to share with the app's process");
    }
}

Watch::~Watch()
{
    UnmapViewOfFile(m_watched);
}

void Watch::Await(std::optional<std::uint32_t> killAt) const
{
    m_watched->count = 0;
    m_watched->isKilled = false;
    m_watched->killAt = killAt.value_or(Watched::never);
    m_watched->isAwaited = true;
}

void Watch::SetTimePasses(bool passes) const
{
    passes ? SetEvent(m_time.Get()) : ResetEvent(m_time.Get());
}

std::span<Call const> Watch::Calls() const
{
    auto const made = std::min({m_watched->count.load(), m_watched->killAt.load(), Watched::mostCalls});
    return std::span(m_watched->calls).first(made);
}

} // namespace explore::kill
