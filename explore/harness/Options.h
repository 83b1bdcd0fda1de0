#pragma once
#include "explore/harness/PlayId.h"

#include <chrono>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace explore
{

// What ./dev explore SUBJECT takes.
struct Options
{
    std::uint64_t seed = 1;
    bool isShort = false;                             // the share that is part of ./dev test
    std::optional<std::chrono::minutes> longest = {}; // go on with plays by chance for so long
    std::optional<PlayId> replay = {};
    std::vector<std::string> stories = {}; // empty: all
};

struct ParsedOptions
{
    Options options = {};
    std::string error = {}; // empty: there is none
};

// --seed N, --for MINUTES, --replay ID, --short; all other words are names of stories.
ParsedOptions ParseOptions(std::span<char const* const> arguments);

} // namespace explore
