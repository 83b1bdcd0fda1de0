#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace sim
{

// Milliseconds of local time since 1601, the time of lines in the log and the journal.
using Moment = std::int64_t;

Moment Now();

// Of a time in 100 ns since 1601, UTC.
Moment LocalMoment(std::int64_t utc);

// A local calendar time; nullopt when there is no such day or time.
std::optional<Moment> MomentOf(int year, int month, int day, int hour, int minute, int second, int milliseconds);

// 2024-01-05 09:30:12.045
std::wstring DateAndTimeText(Moment moment);

// 09:30:12.045
std::wstring TimeText(Moment moment);

// The opposite of DateAndTimeText.
std::optional<Moment> ParseDateAndTime(std::wstring_view date, std::wstring_view time);

} // namespace sim
