#pragma once
#include "doctor/log/LogLine.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace doctor
{

// Which lines are shown. What is not set lets all lines through.
struct Filter
{
    std::optional<LogTime> since{}; // lines from that time on
    std::optional<std::uint32_t> thread{};
    std::optional<zant::LogLevel> level{}; // lines of that level or a more severe one
    std::optional<std::string> category{}; // in upper or lower case
    std::string text{};                    // the message holds it, in upper or lower case (ASCII)

    bool Matches(LogLine const& line) const;

    // Text in no format of the app has no fields: it is shown when nothing but its text is asked for.
    bool MatchesText(std::string_view other) const;
};

// "2024-01-05", "2024-01-05 09:30", "2024-01-05 09:30:12" or with "T" between: a local time of the machine that wrote
// the log. nullopt for anything else.
std::optional<LogTime> ParseTime(std::string_view text);

} // namespace doctor
