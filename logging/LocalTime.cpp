#include "logging/LocalTime.h"

#include "logging/LineText.h"

#include <windows.h>

namespace zant
{

std::uint64_t NowInMilliseconds() noexcept
{
    constexpr std::uint64_t ticksPerMillisecond = 10'000;
    constexpr std::uint64_t ticksFrom1601To1970 = 116'444'736'000'000'000;
    FILETIME time;
    GetSystemTimePreciseAsFileTime(&time);
    auto const ticks = (std::uint64_t{time.dwHighDateTime} << 32) | time.dwLowDateTime;
    return (ticks - ticksFrom1601To1970) / ticksPerMillisecond;
}

std::wstring const& SecondText::Of(std::int64_t seconds)
{
    if (seconds != m_second)
    {
        std::tm local = {};
        m_text = _localtime64_s(&local, &seconds) == 0 ? DateAndTimeText(local) : std::wstring();
        m_second = seconds;
    }
    return m_text;
}

} // namespace zant
