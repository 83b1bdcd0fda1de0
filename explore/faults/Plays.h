#pragma once
#include "explore/faults/Flow.h"
#include "explore/harness/PlayId.h"
#include "explore/harness/Random.h"

#include <vector>

namespace explore::faults
{

// Each call of a flow in each way that it can go.
std::vector<PlayId> SinglePlays(Flow const& flow);

// Two calls of a flow in some way.
PlayId PairByChance(Flow const& flow, Random& random);

} // namespace explore::faults
