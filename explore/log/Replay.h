#pragma once
#include "explore/harness/PlayId.h"

namespace explore
{

// Plays one again and shows each step. The exit code: 1 where it shows a flaw that is by no rule, 2 where there is no
// such play.
int Replay(PlayId const& id);

} // namespace explore
