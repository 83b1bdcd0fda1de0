#pragma once
#include "explore/log/LogPlay.h"

#include <optional>
#include <string>
#include <vector>

namespace explore
{

struct Flaw
{
    std::string kind;
    std::string what;
    std::string rule = {}; // by which it is so; empty: by none
};

struct Verdict
{
    std::string outcome; // the same for plays that went alike
    std::vector<Flaw> flaws;
};

// What the rules lose, by the names that docs/log.md uses.
namespace rule
{

inline constexpr auto endedBeforeEmptying = "ended-before-emptying";
inline constexpr auto endedWithinLine = "ended-within-a-line";
inline constexpr auto fullAtLine = "full-at-a-line";
inline constexpr auto fullAtRotation = "full-at-a-rotation";
inline constexpr auto none = "";

inline constexpr std::size_t count = 4;

} // namespace rule

Verdict Judge(LogRecord const& record);

} // namespace explore
