#pragma once
#include <string>
#include <windows.h>

namespace zant
{

// The name under which a log is set aside or copied: "C:\logs\KZEB.log" at 09:30:12 on 5 January 2024 gives
// "C:\logs\KZEB 2024-1-5 09-30-12.log". The system formats date and time for the user's default locale, whose calendar
// determines the year. A date or time that it cannot format is empty; the name is empty when both are. Throws
// std::bad_alloc only.
std::wstring DatedPath(std::wstring const& path, SYSTEMTIME const& local);

// The date in such a name, `daysBack` days of 24 hours earlier.
std::wstring DateText(SYSTEMTIME const& local, unsigned daysBack = 0);

// The current local time.
SYSTEMTIME LocalNow() noexcept;

} // namespace zant
