#pragma once
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

// Compares ways to do the same work. They take turns in short blocks, so that a disturbance of the machine disturbs
// all of them; what counts is the ratio of neighbouring blocks to the first way, the floor. The floor runs twice: the
// second time, under its own name, shows how far a ratio of 1 strays.
namespace bench
{

// Does the work so many times and gives the microseconds that one time takes.
using Block = std::function<double(int times)>;

struct Contender
{
    std::string name;
    Block block;
    double limit = 0; // of the ratio to the floor; 0: none
};

// The middle half of all measurements and their middle.
struct Spread
{
    double low;
    double median;
    double high;
};

inline Spread SpreadOf(std::vector<double> values)
{
    std::ranges::sort(values);
    auto const at = [&](std::size_t quarter) { return values[(values.size() - 1) * quarter / 4]; };
    return {at(1), at(2), at(3)};
}

// Times an operation from its beginning to its end.
template <typename Operation>
Block Timed(Operation operation)
{
    return [operation](int times) {
        auto const start = std::chrono::steady_clock::now();
        for (int count = 0; count < times; ++count)
        {
            operation();
        }
        std::chrono::duration<double, std::micro> const taken = std::chrono::steady_clock::now() - start;
        return taken.count() / times;
    };
}

// A short run shows that a bench works. Its figures mean nothing, so it judges no limit.
inline bool IsShort()
{
    return std::getenv("VELMO_BENCH_SHORT") != nullptr;
}

inline int Rounds(int full)
{
    return IsShort() ? 2 : full;
}

// Holds a figure against its limit, and ends its row with the verdict.
inline bool Judge(double figure, double limit, int decimals, char const* unit)
{
    if (IsShort())
    {
        return true;
    }
    auto const holds = figure <= limit;
    std::printf("  at most %.*f%s: %s", decimals, limit, unit, holds ? "holds" : "OVER");
    return holds;
}

// The closing line, without which a bench does not count as run (cmake/wine-run), and the exit code.
inline int Conclude(char const* name, bool holds)
{
    std::printf("\nbench %s: %s\n", name,
                IsShort() ? "works (a short run, without a verdict)"
                : holds   ? "its limits hold"
                          : "a limit does NOT hold");
    return holds ? 0 : 1;
}

inline bool PrintRow(Contender const& contender, Spread const& microseconds, Spread const& ratio)
{
    std::printf("  %-34s %9.2f %9.2f - %-9.2f %6.3f  %6.3f - %-6.3f", contender.name.c_str(), microseconds.median,
                microseconds.low, microseconds.high, ratio.median, ratio.low, ratio.high);
    auto const holds = contender.limit == 0 || Judge(ratio.median, contender.limit, 2, "");
    std::printf("\n");
    return holds;
}

// Prints a table of medians with the middle half of the measurements; the floor is contenders[0]. True when every limit
// holds.
inline bool Compare(char const* title, std::vector<Contender> const& contenders, int operationsPerBlock, int rounds)
{
    auto entrants = contenders;
    entrants.insert(entrants.begin() + 1, {"the same again (A/A)", contenders[0].block, 0});
    std::vector<std::vector<double>> times(entrants.size()), ratios(entrants.size());
    for (auto const& entrant : entrants)
    {
        entrant.block(operationsPerBlock); // warms up
    }
    for (int round = 0; round < Rounds(rounds); ++round)
    {
        // Each round begins with another, so that none always follows the same neighbour.
        std::vector<double> taken(entrants.size());
        for (std::size_t turn = 0; turn < entrants.size(); ++turn)
        {
            auto const which = (turn + static_cast<std::size_t>(round)) % entrants.size();
            taken[which] = entrants[which].block(operationsPerBlock);
        }
        for (std::size_t which = 0; which < entrants.size(); ++which)
        {
            times[which].push_back(taken[which]);
            ratios[which].push_back(taken[which] / taken[0]);
        }
    }
    std::printf("\n%s\n  %-34s %9s %21s %6s  %15s\n", title, "", "median us", "middle half      ", "ratio",
                "middle half  ");
    auto allHold = true;
    for (std::size_t which = 0; which < entrants.size(); ++which)
    {
        allHold &= PrintRow(entrants[which], SpreadOf(times[which]), SpreadOf(ratios[which]));
    }
    return allHold;
}

// Prints the median time of one operation against a limit in nanoseconds; true when it holds.
inline bool Measure(Contender const& contender, double limitNanoseconds, int operationsPerBlock, int rounds)
{
    std::vector<double> times;
    for (int round = 0; round < Rounds(rounds); ++round)
    {
        times.push_back(contender.block(operationsPerBlock) * 1'000);
    }
    auto const spread = SpreadOf(times);
    std::printf("  %-34s %7.0f ns  %7.0f - %-7.0f", contender.name.c_str(), spread.median, spread.low, spread.high);
    auto const holds = Judge(spread.median, limitNanoseconds, 0, " ns");
    std::printf("\n");
    return holds;
}

} // namespace bench
