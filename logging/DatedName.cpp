#include "logging/DatedName.h"

#include "logging/LogPath.h"

#include <cstdint>

namespace zant
{

namespace
{

constexpr int mostCharacters = 80; // longer than a date or time of any locale

std::wstring TimeText(SYSTEMTIME const& local)
{
    wchar_t text[mostCharacters] = {};
    GetTimeFormatEx(LOCALE_NAME_USER_DEFAULT, TIME_FORCE24HOURFORMAT, &local, L"hh'-'mm'-'ss", text, mostCharacters);
    return text;
}

SYSTEMTIME Earlier(SYSTEMTIME const& local, unsigned days)
{
    constexpr std::uint64_t ticksPerDay = 86'400ull * 10'000'000;
    FILETIME time = {};
    SystemTimeToFileTime(&local, &time);
    auto const ticks = ((std::uint64_t{time.dwHighDateTime} << 32) | time.dwLowDateTime) - days * ticksPerDay;
    time = {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
    SYSTEMTIME earlier = {};
    FileTimeToSystemTime(&time, &earlier);
    return earlier;
}

} // namespace

std::wstring DateText(SYSTEMTIME const& local, unsigned daysBack)
{
    auto const day = Earlier(local, daysBack);
    wchar_t text[mostCharacters] = {};
    GetDateFormatEx(LOCALE_NAME_USER_DEFAULT, 0, &day, L"yyyy-M-d", text, mostCharacters, nullptr);
    return text;
}

std::wstring DatedPath(std::wstring const& path, SYSTEMTIME const& local)
{
    auto const date = DateText(local);
    auto const time = TimeText(local);
    if (date.empty() && time.empty())
    {
        return {};
    }
    return std::wstring(WithoutExtension(path)) + L' ' + date + L' ' + time + std::wstring(ExtensionOf(path));
}

SYSTEMTIME LocalNow() noexcept
{
    SYSTEMTIME now;
    GetLocalTime(&now);
    return now;
}

} // namespace zant
