#pragma once
#include <string>

namespace explore
{

// A line as it stands in the log, with zeros for date and time, which depend on the machine's time zone.
std::wstring FormOf(std::wstring const& message);
std::wstring FormOfHeader();

// What stands in the log, or the beginning of it, with zeros for the digits of its date and time.
std::wstring WithoutTime(std::wstring line);

} // namespace explore
