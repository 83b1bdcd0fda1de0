#pragma once
#include <string>
#include <windows.h>

namespace zant
{

// The name under which a log is set aside or copied: "C:\logs\KZEB.log" at 09:30:12 on 5 January 2024 gives
// "C:\logs\KZEB 2024-1-5 09-30-12.log". The system writes date and time for the user's default locale (its calendar
// decides about the year). What it cannot write is left out between its blanks; the name is empty when it can write
// neither. Throws std::bad_alloc only.
std::wstring DatedPath(std::wstring const& path, SYSTEMTIME const& local);

// The date as it stands in such a name, `daysBack` days of 24 hours earlier.
std::wstring DateText(SYSTEMTIME const& local, unsigned daysBack = 0);

// The local time of now.
SYSTEMTIME LocalNow() noexcept;

} // namespace zant
