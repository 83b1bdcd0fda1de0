#pragma once
#include "explore/harness/Random.h"

#include <cstdint>
#include <span>
#include <vector>

namespace explore::kill
{

// The numbers of all calls, in the order in which they are played: of each function in turn one that is drawn, so that
// the first ones show each function, and a loop of thousands of calls keeps none waiting. functions: those of the
// calls, in their order.
std::vector<std::uint32_t> InTurn(std::span<std::uint32_t const> functions, Random& random);

} // namespace explore::kill
