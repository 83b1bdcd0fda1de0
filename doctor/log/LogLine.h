#pragma once
#include "doctor/log/LogTime.h"
#include "utils/LogLevel.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace doctor
{

// "INFO" and so on, as lines have it; nullopt for other words.
std::optional<zant::LogLevel> LevelOf(std::string_view name);

// The opposite.
std::string LevelText(zant::LogLevel level);

// A line of the app's log, in its fields. The texts are parts of the text that was parsed.
struct LogLine
{
    LogTime time{};
    zant::LogLevel level{};
    std::string_view product{};
    std::string_view component{};
    std::string_view category{};
    std::string_view detail{};
    std::string_view origin{};
    std::uint32_t thread = 0;
    std::string_view message{};
};

// nullopt for text in any other format.
std::optional<LogLine> ParseLogLine(std::string_view text);

// Where in the text a second line begins, which a killed process left no line end before; npos when none does.
std::size_t FindGluedLine(std::string_view text);

} // namespace doctor
