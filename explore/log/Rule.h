#pragma once
#include <cstddef>

namespace explore::rule
{

// What the rules lose, by the names that docs/log.md uses.
inline constexpr auto copyOfSameSecond = "copy-of-the-same-second";
inline constexpr auto endedBeforeEmptying = "ended-before-emptying";
inline constexpr auto endedWithinLine = "ended-within-a-line";
inline constexpr auto fullAtLine = "full-at-a-line";
inline constexpr auto fullAtRotation = "full-at-a-rotation";
inline constexpr auto none = "";

} // namespace explore::rule
