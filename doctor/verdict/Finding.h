#pragma once
#include "doctor/log/LogTime.h"
#include "doctor/stories/Stage.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace doctor
{

// A line of a log that says so.
struct Evidence
{
    LogTime time{};
    std::filesystem::path file;
    std::uint64_t line = 0; // from 1
    std::string message;
};

// Something that a reader should know: what failed, or what is worth a remark.
struct Finding
{
    Stage stage{};
    Result result = Result::Failed;
    std::string what;   // a sentence: "The desktop component was not launched."
    std::string cause;  // what usually causes it; empty where nothing does
    std::string advice; // what to do next; empty where there is nothing to do
    std::uint64_t count = 1;
    std::optional<Evidence> first; // nothing: it was looked at on the machine, not read in a log
    std::optional<Evidence> last;  // of several
    LogTime latest{};              // when it began the last time it happened
    bool lasts = false;            // to the end of what was looked at, whatever else works
};

} // namespace doctor
