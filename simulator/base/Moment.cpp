#include "simulator/base/Moment.h"

#include "simulator/base/Text.h"

#include <windows.h>

namespace sim
{

namespace
{

constexpr std::int64_t ticksPerMillisecond = 10'000;

FILETIME ToFileTime(std::int64_t ticks)
{
    return {static_cast<DWORD>(ticks & 0xFFFFFFFF), static_cast<DWORD>(ticks >> 32)};
}

std::int64_t ToTicks(FILETIME time)
{
    return (static_cast<std::int64_t>(time.dwHighDateTime) << 32) | time.dwLowDateTime;
}

SYSTEMTIME ToCalendar(Moment moment)
{
    auto const time = ToFileTime(moment * ticksPerMillisecond);
    SYSTEMTIME calendar{};
    FileTimeToSystemTime(&time, &calendar);
    return calendar;
}

std::wstring Padded(int value, std::size_t width)
{
    auto const digits = std::to_wstring(value);
    return std::wstring(width > digits.size() ? width - digits.size() : 0, L'0') + digits;
}

int NumberAt(std::wstring_view text, std::size_t at, std::size_t length)
{
    auto const number = at <= text.size() ? ParseNumber(text.substr(at, length)) : std::nullopt;
    return number && *number <= 9999 ? static_cast<int>(*number) : -1;
}

} // namespace

Moment Now()
{
    FILETIME utc;
    GetSystemTimeAsFileTime(&utc);
    return LocalMoment(ToTicks(utc));
}

Moment LocalMoment(std::int64_t utc)
{
    auto const time = ToFileTime(utc);
    FILETIME local;
    FileTimeToLocalFileTime(&time, &local);
    return ToTicks(local) / ticksPerMillisecond;
}

std::optional<Moment> MomentOf(int year, int month, int day, int hour, int minute, int second, int milliseconds)
{
    auto const word = [](int value) { return value < 0 ? WORD{0xFFFF} : static_cast<WORD>(value); };
    SYSTEMTIME const calendar{word(year), word(month),  word(0),      word(day),
                              word(hour), word(minute), word(second), word(milliseconds)};
    FILETIME time;
    if (!SystemTimeToFileTime(&calendar, &time))
    {
        return std::nullopt;
    }
    return ToTicks(time) / ticksPerMillisecond;
}

std::wstring DateAndTimeText(Moment moment)
{
    auto const calendar = ToCalendar(moment);
    return Padded(calendar.wYear, 4) + L"-" + Padded(calendar.wMonth, 2) + L"-" + Padded(calendar.wDay, 2) + L" " +
           TimeText(moment);
}

std::wstring TimeText(Moment moment)
{
    auto const calendar = ToCalendar(moment);
    return Padded(calendar.wHour, 2) + L":" + Padded(calendar.wMinute, 2) + L":" + Padded(calendar.wSecond, 2) + L"." +
           Padded(calendar.wMilliseconds, 3);
}

std::optional<Moment> ParseDateAndTime(std::wstring_view date, std::wstring_view time)
{
    return MomentOf(NumberAt(date, 0, 4), NumberAt(date, 5, 2), NumberAt(date, 8, 2), NumberAt(time, 0, 2),
                    NumberAt(time, 3, 2), NumberAt(time, 6, 2), NumberAt(time, 9, 3));
}

} // namespace sim
