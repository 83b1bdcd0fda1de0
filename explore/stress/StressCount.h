#pragma once
#include <cstdint>
#include <string>
#include <vector>

namespace explore::stress
{

// A process, as it was seen from without.
struct Life
{
    std::uint32_t thread = 0;
    std::uint64_t first = 1;        // the number of its first line
    std::uint64_t begun = 0;        // of the last line that it has begun
    std::uint64_t acknowledged = 0; // of the last one whose call has returned
    bool wasKilled = false;
    bool wasChecking = false;  // the log's size, when it ended
    std::uint64_t logSize = 0; // of the log, when it was killed
    bool isSilent = false;
};

struct TextLine
{
    std::string text;
    std::uint64_t number;   // in its file
    bool isDamaged = false; // it has bytes that are no text
    bool isComplete = true; // its end is there
};

// The log or a copy of it.
struct LogText
{
    std::string name;
    bool isCopy = false;
    bool isMarked = true; // it begins with its mark
    std::uint64_t size = 0;
    std::vector<TextLine> lines = {};
};

struct StressRecord
{
    std::vector<Life> lives;         // by their numbers
    std::vector<std::string> header; // the messages of the header's lines
    std::vector<LogText> files;
};

// How often something is so, and where first.
struct Found
{
    std::uint64_t times = 0;
    std::string first = {};

    void Add(std::string what)
    {
        if (times++ == 0)
        {
            first = std::move(what);
        }
    }
};

struct StressCount
{
    std::uint64_t lines = 0; // that stand there once, as they should
    Found torn = {};
    Found doubled = {};
    Found lost = {};
    Found silent = {};
    Found unmarked = {};
    // What the rules of the log allow where a process is killed.
    std::uint64_t inFlight = 0; // lines that stand there though their call had not returned
    std::uint64_t cut = 0;      // the same, of which only the beginning stands there
    std::uint64_t repeated = 0; // copies whose lines the log has kept
    std::uint64_t empty = 0;    // copies without a line
};

StressCount CountLines(StressRecord const& record);

} // namespace explore::stress
