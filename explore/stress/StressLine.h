#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace explore::stress
{

// Each line is named by the process that writes it and by its number among the lines of that process's place, so that
// no two are the same.
struct LineName
{
    std::uint32_t life;
    std::uint64_t number;
};

// The one process whose lines fill the log before the others start: long ones.
inline constexpr std::uint32_t filler = 0;

// What a line says: its name, again and again, to a length that differs from line to line. So whatever stands in
// another line's place differs.
std::string MessageOf(LineName name);

// Whose message begins so; nothing where none does.
std::optional<LineName> LineNameIn(std::string_view message);

inline constexpr std::string_view product = "ZEB";
inline constexpr std::string_view component = "ZEB";
inline constexpr std::string_view category = "Stress";

inline constexpr std::size_t dateLength = 21; // of "01/05/24 09:30:12:045"

// A line behind its date, as the log has it.
std::string BehindDate(std::uint32_t thread, std::string_view message);

// Whether a text is such a date, or the beginning of one.
bool IsDateOrBeginning(std::string_view text);

} // namespace explore::stress
