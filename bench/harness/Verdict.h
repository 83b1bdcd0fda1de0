#pragma once
#include "bench/harness/Interval.h"

#include <optional>

namespace bench
{

// What an interval says of a limit. It says something only when the whole of it lies on one side.
enum class Verdict
{
    None, // there is no limit, or the run was a short one
    Holds,
    CannotTell,
    Over
};

constexpr Verdict Judge(Interval const& interval, std::optional<double> limit)
{
    if (!limit)
    {
        return Verdict::None;
    }
    return interval.high <= *limit ? Verdict::Holds : interval.low > *limit ? Verdict::Over : Verdict::CannotTell;
}

constexpr char const* TextOf(Verdict verdict)
{
    switch (verdict)
    {
    case Verdict::None:
        return "";
    case Verdict::Holds:
        return "holds";
    case Verdict::Over:
        return "OVER";
    default:
        return "cannot tell on this machine now";
    }
}

} // namespace bench
