#include "simulator/base/Moment.h"

#include "simulator/base/Text.h"

#include <bit>
#include <windows.h>

namespace sim
{

namespace
{

constexpr std::int64_t ticksPerMillisecond = 10'000;

SYSTEMTIME ToCalendar(Moment moment)
{
    auto const time = std::bit_cast<FILETIME>(moment * ticksPerMillisecond);
    SYSTEMTIME calendar{};
    FileTimeToSystemTime(&time, &calendar);
    return calendar;
}

std::wstring Digits(int value, std::size_t width)
{
    return RightAligned(value, width, L'0');
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
    return LocalMoment(std::bit_cast<std::int64_t>(utc));
}

Moment LocalMoment(std::int64_t utc)
{
    auto const time = std::bit_cast<FILETIME>(utc);
    FILETIME local;
    FileTimeToLocalFileTime(&time, &local);
    return std::bit_cast<std::int64_t>(local) / ticksPerMillisecond;
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
    return std::bit_cast<std::int64_t>(time) / ticksPerMillisecond;
}

std::wstring DateAndTimeText(Moment moment)
{
    auto const calendar = ToCalendar(moment);
    return Digits(calendar.wYear, 4) + L"-" + Digits(calendar.wMonth, 2) + L"-" + Digits(calendar.wDay, 2) + L" " +
           TimeText(moment);
}

std::wstring TimeText(Moment moment)
{
    auto const calendar = ToCalendar(moment);
    return Digits(calendar.wHour, 2) + L":" + Digits(calendar.wMinute, 2) + L":" + Digits(calendar.wSecond, 2) + L"." +
           Digits(calendar.wMilliseconds, 3);
}

std::optional<Moment> ParseDateAndTime(std::wstring_view date, std::wstring_view time)
{
    return MomentOf(NumberAt(date, 0, 4), NumberAt(date, 5, 2), NumberAt(date, 8, 2), NumberAt(time, 0, 2),
                    NumberAt(time, 3, 2), NumberAt(time, 6, 2), NumberAt(time, 9, 3));
}

} // namespace sim
