#pragma once
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace explore
{

using ProcessNumber = std::uint8_t; // counted from 0
using FaultNumber = std::uint8_t;

// What happens next.
struct Decision
{
    enum class Kind : std::uint8_t
    {
        Run,   // a process makes its call
        Fault, // a fault is injected, or the process that would have gone on
        LeaveOff
    };

    Kind kind;
    std::uint8_t number = 0; // of the process or of the fault

    bool operator==(Decision const&) const = default;
};

// Where a decision is due.
struct Turn
{
    std::uint32_t step;                      // counted from 0
    std::vector<ProcessNumber> const& ready; // in ascending order; at least one
    std::optional<ProcessNumber> current;    // the one that went last, if it is ready

    // The ordinary way: the one that went last goes on; else the first does.
    ProcessNumber Ordinary() const { return current.value_or(ready.front()); }
};

using Decide = std::function<Decision(Turn const&)>;

} // namespace explore
