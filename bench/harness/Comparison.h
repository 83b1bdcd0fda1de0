#pragma once
#include "bench/harness/Contender.h"
#include "bench/harness/Interval.h"
#include "bench/harness/Verdict.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

// Compares ways to do the same work. They take turns in short blocks, so that a disturbance of the machine disturbs
// all of them; what counts is the ratio of the blocks of one round to the first way's, the floor. The floor runs twice:
// the second time, under its own name, shows how far a ratio of 1 strays.
namespace bench
{

struct Comparison
{
    std::string title;
    std::vector<Contender> contenders; // the floor is the first; it has no limit
    int operationsPerBlock;
    std::string unit = "us"; // of what a block gives
};

struct Row
{
    std::string name;
    double time; // of one operation in the comparison's unit, the median
    Interval ratio;
    std::optional<double> limit;
    Verdict verdict;
};

struct Table
{
    std::string title;
    std::vector<Row> rows; // the floor, the same again, the others
    std::size_t rounds;    // that count
    std::size_t leftOut;   // rounds in which something else had the core

    Row const& SameAgain() const { return rows[1]; }
};

// When a comparison ends.
struct Patience
{
    // A row is known once its interval is at most 1 % of its ratio to either side, and says something of its limit.
    static constexpr double precision = 0.01;

    int leastRounds;                // Before this many nothing is looked at.
    std::function<bool()> timeIsUp; // Then it ends whatever is known.
};

Table Compare(Comparison const& comparison, Patience const& patience);

} // namespace bench
