#pragma once
#include "simulator/protocol/Fault.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <vector>

namespace sim
{

// The faults in force, at most one for each call. Not thread-safe: its owner serialises.
class FaultTable
{
  public:
    // Replaces the fault of the same call.
    void Set(Fault fault);

    void Clear() noexcept { m_faults.clear(); }

    bool Has(std::wstring_view call) const { return std::ranges::find(m_faults, call, &Fault::call) != m_faults.end(); }

    // The fault that makes this call fail, if there is one. The call is counted, also one that succeeds.
    std::optional<Fault> Take(std::wstring_view call);

    // A copy of this fault in another table has made a call fail: counts that call and those that succeeded before.
    std::optional<Fault> Use(std::wstring_view call);

    std::vector<Fault> const& All() const noexcept { return m_faults; }

  private:
    std::vector<Fault>::iterator Find(std::wstring_view call);

    std::vector<Fault> m_faults;
};

} // namespace sim
