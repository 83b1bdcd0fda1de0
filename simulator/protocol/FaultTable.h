#pragma once
#include "simulator/protocol/Fault.h"

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

    // The fault that strikes this call, which uses it up by one; a call that it lets pass counts, too.
    std::optional<Fault> Take(std::wstring_view call);

    // Another table's copy of the fault has struck, after the calls that it lets pass: uses this one up by one.
    std::optional<Fault> Use(std::wstring_view call);

    std::vector<Fault> const& All() const noexcept { return m_faults; }

  private:
    std::optional<Fault> Take(std::vector<Fault>::iterator fault);

    std::vector<Fault> m_faults;
};

} // namespace sim
