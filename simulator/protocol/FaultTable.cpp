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

std::optional<Fault> FaultTable::Take(std::wstring_view call)
{
    auto const found = Find(call);
    if (found == m_faults.end())
    {
        return std::nullopt;
    }
    if (found->after > 0)
    {
        --found->after;
        return std::nullopt;
    }
    auto fault = *found;
    if (fault.times != Fault::always && --found->times == 0)
    {
        m_faults.erase(found);
    }
    return fault;
}

std::optional<Fault> FaultTable::Use(std::wstring_view call)
{
    if (auto const found = Find(call); found != m_faults.end())
    {
        found->after = 0;
    }
    return Take(call);
}

std::vector<Fault>::iterator FaultTable::Find(std::wstring_view call)
{
    return std::ranges::find(m_faults, call, &Fault::call);
}

} // namespace sim
