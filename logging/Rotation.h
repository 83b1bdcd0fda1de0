#pragma once
#include "logging/LogLevel.h"

#include <cstdint>
#include <string>
#include <windows.h>

namespace zant
{

// From this size in bytes on a log file is rotated: the more a target writes, the more it may hold.
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

// Whether the control file "pvq.trace" beside the log says "keeplogs", and nothing after it, in its first nine bytes.
bool KeepsCopies(std::wstring const& logPath);

// Copies the log to its dated name and, if that succeeded, empties it. Who calls holds the lock between processes and
// has no handle of the log open.
void MoveContentToCopy(std::wstring const& logPath, SYSTEMTIME const& localNow);

// Deletes what CopiesToDelete names, today being the day of `localNow`. What cannot be deleted stays.
void DeleteOldCopies(std::wstring const& logPath, SYSTEMTIME const& localNow);

} // namespace zant
