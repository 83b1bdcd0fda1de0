#pragma once
#include "simulator/protocol/Event.h"

#include <cstdint>
#include <vector>

namespace sim
{

// The processes that an earlier broker started, by the journal, that did not end, and that still run. since: when the
// device was switched on.
std::vector<unsigned long> LeftOver(std::vector<Event> const& journal, Moment since);

} // namespace sim
