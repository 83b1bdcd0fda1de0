#include "explore/log/Clock.h"

namespace explore
{

namespace
{

std::wstring TwoDigits(unsigned number)
{
    return (number < 10 ? L"0" : L"") + std::to_wstring(number);
}

FILETIME UtcAt(std::uint64_t seconds) noexcept
{
    constexpr std::uint64_t secondsFrom1601To1970 = 11'644'473'600;
    auto const ticks = (seconds + secondsFrom1601To1970) * 10'000'000;
    return {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
}

} // namespace

FILETIME Clock::Utc() const noexcept
{
    return UtcAt(m_seconds);
}

SYSTEMTIME Clock::LocalAt(std::uint64_t seconds) noexcept
{
    auto const utc = UtcAt(seconds);
    SYSTEMTIME local = {};
    FileTimeToSystemTime(&utc, &local);
    return local;
}

std::wstring FormattedDate(SYSTEMTIME const& time, std::wstring_view picture)
{
    return picture == L"yyyy-M-d"
               ? std::to_wstring(time.wYear) + L"-" + std::to_wstring(time.wMonth) + L"-" + std::to_wstring(time.wDay)
               : std::wstring();
}

std::wstring FormattedTime(SYSTEMTIME const& time, std::wstring_view picture)
{
    return picture == L"hh'-'mm'-'ss"
               ? TwoDigits(time.wHour) + L"-" + TwoDigits(time.wMinute) + L"-" + TwoDigits(time.wSecond)
               : std::wstring();
}

} // namespace explore
