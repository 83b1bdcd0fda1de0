#include "bench/harness/Rounds.h"

#include "bench/harness/Interval.h"

#include <algorithm>
#include <iterator>
#include <numeric>

namespace bench
{

Turns::Turns(std::vector<Contender> const& contenders, int operationsPerBlock)
    : m_contenders(contenders), m_operationsPerBlock(operationsPerBlock), m_order(contenders.size())
{
    std::iota(m_order.begin(), m_order.end(), std::size_t{0});
    Next();
}

Round Turns::Next()
{
    std::ranges::shuffle(m_order, m_random);
    Round round(m_contenders.size());
    for (auto const which : m_order)
    {
        round[which] = m_contenders[which].block(m_operationsPerBlock);
    }
    return round;
}

std::vector<double> Times(std::vector<Round> const& rounds, std::size_t contender)
{
    std::vector<double> times(rounds.size());
    std::ranges::transform(rounds, times.begin(), [&](Round const& round) { return round[contender]; });
    return times;
}

std::vector<double> Ratios(std::vector<Round> const& rounds, std::size_t contender)
{
    std::vector<double> ratios(rounds.size());
    std::ranges::transform(rounds, ratios.begin(), [&](Round const& round) { return round[contender] / round[0]; });
    return ratios;
}

std::vector<Round> Undisturbed(std::vector<Round> const& rounds)
{
    std::vector<double> most;
    for (std::size_t contender = 0; contender < rounds.front().size(); ++contender)
    {
        most.push_back(2 * MedianInterval(Times(rounds, contender)).median);
    }
    std::vector<Round> kept;
    std::ranges::copy_if(rounds, std::back_inserter(kept), [&](Round const& round) {
        return std::ranges::equal(round, most, [](double taken, double limit) { return taken <= limit; });
    });
    return kept.empty() ? rounds : kept;
}

} // namespace bench
