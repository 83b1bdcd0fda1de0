#pragma once
#include "explore/faults/model/Outcome.h"

#include <string>

namespace explore::faults
{

// What was seen against what the rules say.
struct Judged
{
    std::string kind; // empty: they agree
    std::string what;
};

// aside: sequences of lines that stand anywhere among the others, each in its own order.
Judged Compare(Outcome const& expected, std::vector<Texts> const& aside, Outcome const& seen);

// What holds whatever goes wrong at the same time.
Judged HoldInvariants(Outcome const& seen, bool mayStayOpen);

// Whether the lines are those of the sequences, each in its own order.
bool IsInterleaving(Texts const& lines, std::vector<Texts> const& sequences);

std::string Shown(Texts const& texts);

std::string NameOf(End end);

} // namespace explore::faults
