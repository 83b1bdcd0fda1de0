#pragma once
#include "simulator/model/Fault.h"

#include <optional>
#include <string_view>
#include <vector>

namespace sim
{

// The faults in force, one for each call at most. Not thread-safe: its owner serialises.
class FaultTable
{
  public:
    // Replaces the fault of the same call.
    void Set(Fault fault);

    void Clear() noexcept;

    // The fault that strikes this call, which uses it up by one.
    std::optional<Fault> Take(std::wstring_view call);

    std::vector<Fault> const& All() const noexcept { return m_faults; }

  private:
    std::vector<Fault> m_faults;
};

} // namespace sim
