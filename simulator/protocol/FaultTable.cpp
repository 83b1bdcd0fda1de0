#include "simulator/protocol/FaultTable.h"

#include <algorithm>

namespace sim
{

void FaultTable::Set(Fault fault)
{
    std::erase_if(m_faults, [&](auto const& other) { return other.call == fault.call; });
    if (fault.times > 0)
    {
        m_faults.push_back(std::move(fault));
    }
}

void FaultTable::Clear() noexcept
{
    m_faults.clear();
}

std::optional<Fault> FaultTable::Take(std::wstring_view call)
{
    auto const found = std::ranges::find(m_faults, call, &Fault::call);
    if (found != m_faults.end() && found->after > 0)
    {
        --found->after;
        return std::nullopt;
    }
    return Take(found);
}

std::optional<Fault> FaultTable::Use(std::wstring_view call)
{
    auto const found = std::ranges::find(m_faults, call, &Fault::call);
    if (found != m_faults.end())
    {
        found->after = 0;
    }
    return Take(found);
}

std::optional<Fault> FaultTable::Take(std::vector<Fault>::iterator fault)
{
    if (fault == m_faults.end())
    {
        return std::nullopt;
    }
    auto taken = *fault;
    if (fault->times != Fault::always)
    {
        --fault->times;
    }
    if (fault->times == 0)
    {
        m_faults.erase(fault);
    }
    return taken;
}

} // namespace sim
