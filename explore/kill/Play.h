#pragma once
#include "explore/kill/Judgement.h"
#include "explore/kill/Stage.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace explore::kill
{

// How a story goes that nothing ends.
struct Reference
{
    std::vector<std::u16string> messages = {}; // of a process, but for its header
    // Of its calls, in their order: the same for those of one function within one line.
    std::vector<std::uint32_t> kinds = {};
};

// Plays it without an end. Throws sim::Error when that does not go as it should, or the calls do not tell the lines.
Reference Rehearse(Stage& stage, Story const& story);

struct Played
{
    Verdict verdict = {};
    bool isEnded = false;                // by its call
    std::uint64_t state = 0;             // a hash of what the first process has left
    std::vector<std::string> calls = {}; // of that process, with their threads
};

// Plays it: the process is ended at its call of that number, and the request made again.
Played PlayOnce(Stage& stage, Story const& story, Reference const& reference, std::uint32_t killAt);

} // namespace explore::kill
