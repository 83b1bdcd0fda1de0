#pragma once
#include "utils/LogLevel.h"

#include <cstdint>

namespace zant
{

// The size in bytes from which a log is rotated: the more a target logs, the larger its file may grow.
constexpr std::uint64_t RotationLimit(LogLevel threshold) noexcept
{
    constexpr std::uint64_t mebibyte = 1'048'576;
    switch (threshold)
    {
    case LogLevel::Trace:
        return 50 * mebibyte;
    case LogLevel::Debug:
        return 20 * mebibyte;
    default:
        return 15 * mebibyte;
    }
}

} // namespace zant
