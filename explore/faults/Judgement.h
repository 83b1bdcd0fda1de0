#pragma once
#include "explore/faults/Flow.h"

#include <string>

namespace explore::faults
{

// What was seen against what the rules say.
struct Judged
{
    std::string kind = {}; // empty: they agree
    std::string what = {};
};

// A play: to the letter where what follows has one order, or orders that can be tried; otherwise by the invariants.
Judged Judge(Flow const& flow, std::vector<WayAt> const& deviations, Outcome const& seen);

// Whether the rules tell all that follows.
bool IsExact(Flow const& flow, std::vector<WayAt> const& deviations);

Judged Compare(Outcome const& expected, std::vector<Aside> const& asides, Outcome const& seen);

// What holds whatever goes wrong at the same time. possible: what the rules say of orders in which it may have come;
// each part of what was seen is that of one of them.
Judged HoldInvariants(Outcome const& seen, std::vector<Outcome> const& possible);

// Whether the texts are those of the sequences, each in its own order.
bool IsInterleaving(Texts const& texts, std::vector<Texts> const& sequences);

std::string Shown(Texts const& texts);

std::string NameOf(End end);

} // namespace explore::faults
