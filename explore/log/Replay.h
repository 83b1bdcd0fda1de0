#pragma once
#include "explore/harness/PlayId.h"
#include "explore/log/Verdict.h"

namespace explore
{

// Prints what a play has come to. The exit code: 1 where it shows a flaw that is by no rule.
int Show(Verdict const& verdict);

// Plays one again and shows each step. The exit code is that of the verdict, 2 where there is no such play.
int Replay(PlayId const& id);

} // namespace explore
