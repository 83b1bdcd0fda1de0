#pragma once
#include "explore/harness/PlayId.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace explore::faults
{

// What a play showed.
struct Verdict
{
    std::string kind = {};                  // of its deviation from the rules; empty for none
    std::string what = {};                  // the deviation
    std::string outcome = {};               // in a few words
    std::string shown = {};                 // the calls and lines
    std::vector<std::uint64_t> states = {}; // hashes: what was done up to each call
    bool endsProcess = false;               // that of the play
};

// Plays it in this process. judged: called with what it showed; where the app ends the process, right before that.
// Throws std::runtime_error for a play that does not exist.
void PlayOnce(PlayId const& id, std::function<void(Verdict const&)> const& judged);

} // namespace explore::faults
