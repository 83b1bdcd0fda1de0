#pragma once
#include <atomic>
#include <cstdint>

namespace explore::kill
{

// What the exploration shares with the library in the app's process: a section of this layout, whose name that process
// finds in its environment. An event of the same name with `timeSuffix` behind ends the long waits of each process that
// has the library.
inline constexpr wchar_t sectionVariable[] = L"VELMO_EXPLORE_KILL";
inline constexpr wchar_t timeSuffix[] = L"-time";

// The exit code of a process that is ended at a call.
inline constexpr std::uint32_t killedCode = 0x4B;

struct Call
{
    std::uint32_t function; // its number among the names
    std::uint32_t thread;
};

struct Watched
{
    static constexpr std::uint32_t never = UINT32_MAX;
    static constexpr std::uint32_t mostFunctions = 512;
    static constexpr std::uint32_t mostCalls = 1 << 16;

    std::atomic<bool> isAwaited;       // the next process that loads the library is watched
    std::atomic<std::uint32_t> killAt; // the number of the call that ends it, counted from 0
    std::atomic<std::uint32_t> count;  // of its calls, with those that it could no longer make
    std::atomic<bool> isKilled;
    std::uint32_t functions;
    char names[mostFunctions][48];
    Call calls[mostCalls]; // further ones are counted only
};

} // namespace explore::kill
