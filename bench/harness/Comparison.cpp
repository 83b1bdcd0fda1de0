#include "bench/harness/Comparison.h"

#include "bench/harness/Rounds.h"

#include <algorithm>

namespace bench
{

namespace
{

std::vector<Contender> WithTheSameAgain(std::vector<Contender> contenders)
{
    Contender const again{"the same again (A/A)", contenders.front().block};
    contenders.insert(contenders.begin() + 1, again);
    return contenders;
}

Table TableOf(Comparison const& comparison, std::vector<Contender> const& contenders, std::vector<Round> const& all)
{
    auto const rounds = Undisturbed(all);
    Table table{comparison.title, {}, rounds.size(), all.size() - rounds.size()};
    for (std::size_t which = 0; which < contenders.size(); ++which)
    {
        auto const& contender = contenders[which];
        auto const ratio = MedianInterval(Ratios(rounds, which));
        table.rows.push_back({contender.name, MedianInterval(Times(rounds, which)).median, ratio, contender.limit,
                              Judge(ratio, contender.limit)});
    }
    return table;
}

// A row without a limit need only be shown: nothing waits for it but the A/A row, which the others are trusted by.
bool IsKnown(Table const& table)
{
    auto const precise = [](Row const& row) { return row.ratio.Precision() <= Patience::precision; };
    return precise(table.SameAgain()) && std::ranges::all_of(table.rows, [&](Row const& row) {
               return !row.limit || (precise(row) && row.verdict != Verdict::CannotTell);
           });
}

} // namespace

Table Compare(Comparison const& comparison, Patience const& patience)
{
    auto const contenders = WithTheSameAgain(comparison.contenders);
    Turns turns(contenders, comparison.operationsPerBlock);
    std::vector<Round> rounds;
    for (auto next = static_cast<std::size_t>(patience.leastRounds);; next += next / 4 + 1)
    {
        while (rounds.size() < next && (rounds.empty() || !patience.timeIsUp()))
        {
            rounds.push_back(turns.Next());
        }
        auto table = TableOf(comparison, contenders, rounds);
        if (patience.timeIsUp() || IsKnown(table))
        {
            return table;
        }
    }
}

} // namespace bench
