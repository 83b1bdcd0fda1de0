#include "simulator/model/FaultTable.h"

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
    auto const found =
        std::find_if(m_faults.begin(), m_faults.end(), [&](auto const& fault) { return fault.call == call; });
    if (found == m_faults.end())
    {
        return std::nullopt;
    }
    auto const taken = *found;
    if (found->times != Fault::always && --found->times == 0)
    {
        m_faults.erase(found);
    }
    return taken;
}

} // namespace sim
