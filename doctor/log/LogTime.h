#pragma once
#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace doctor
{

// The local time of the machine that wrote the log, in milliseconds. A log says nothing of its time zone.
using LogTime = std::chrono::local_time<std::chrono::milliseconds>;

// The time that a text in the form says; nullopt when it has another form, or there is no such day or time of day. In
// the form each digit of the year, month, day, hour, minute, second and millisecond is a letter of YMDhmsf, all else
// stands for itself: "YYYY-MM-DD hh:mm". YY is a year of this century.
std::optional<LogTime> TimeIn(std::string_view text, std::string_view form);

// 2024-01-05 09:30:12.045
std::string TimeText(LogTime time);

} // namespace doctor
