#pragma once
#include "explore/harness/Random.h"

#include <cstdint>
#include <span>
#include <vector>

namespace explore::kill
{

// The numbers of all calls, in the order in which they are played: one of each kind, then another one of each, drawn at
// random. So a few of them show much, and a loop of thousands of calls keeps none waiting. kinds: those of the calls,
// in their order.
std::vector<std::uint32_t> InTurn(std::span<std::uint32_t const> kinds, Random& random);

} // namespace explore::kill
