#pragma once
#include "explore/harness/PlayId.h"

namespace explore
{

// Leaves out of a play each deviation that it does not need: `shows(play)` tells whether a play still shows what it is
// for.
template <typename Shows>
PlayId Shortened(PlayId play, Shows shows)
{
    for (std::size_t at = play.deviations.size(); at-- > 0;)
    {
        auto shorter = play;
        shorter.deviations.erase(shorter.deviations.begin() + static_cast<std::ptrdiff_t>(at));
        if (shows(shorter))
        {
            play = std::move(shorter);
        }
    }
    return play;
}

} // namespace explore
