#pragma once
#include "bench/harness/Contender.h"

#include <cstddef>
#include <random>
#include <vector>

namespace bench
{

// What one turn of each contender took, in microseconds for one operation, in the contenders' order.
using Round = std::vector<double>;

// Gives the contenders their turns.
class Turns
{
  public:
    // contenders: must outlive this. Each one is given a first turn that does not count.
    Turns(std::vector<Contender> const& contenders, int operationsPerBlock);

    // One round. Its order is random, so that none always follows the same neighbour; the seed is always the same.
    Round Next();

  private:
    std::vector<Contender> const& m_contenders;
    int m_operationsPerBlock;
    std::vector<std::size_t> m_order;
    std::mt19937 m_random;
};

// The rounds in which nobody else had the core: those in which no block took more than twice its contender's median. A
// round is left out whole, so that no contender gains by it. All of them where that would leave none.
std::vector<Round> Undisturbed(std::vector<Round> const& rounds);

// What a contender took.
std::vector<double> Times(std::vector<Round> const& rounds, std::size_t contender);

// How many times as long as the first contender, the floor, a contender took in each round.
std::vector<double> Ratios(std::vector<Round> const& rounds, std::size_t contender);

} // namespace bench
