#include "simulator/services/VirtualClock.h"

#include "simulator/model/Moment.h"
#include "simulator/services/WordFile.h"

#include <cwchar>
#include <windows.h>

namespace sim
{

VirtualClock::VirtualClock(std::wstring file) : m_file(std::move(file))
{
    auto const lines = ReadWordFile(m_file);
    if (!lines.empty() && lines[0].size() == 2 && lines[0][0] == L"minutes-ahead")
    {
        m_minutesAhead = std::wcstoll(lines[0][1].c_str(), nullptr, 10);
    }
}

std::int64_t VirtualClock::Now() const
{
    FILETIME time;
    GetSystemTimeAsFileTime(&time);
    return ((static_cast<std::int64_t>(time.dwHighDateTime) << 32) | time.dwLowDateTime) + m_minutesAhead * minute;
}

void VirtualClock::Advance(std::int64_t minutes)
{
    WriteWordFile(m_file, {{L"minutes-ahead", std::to_wstring(m_minutesAhead + minutes)}});
    m_minutesAhead += minutes;
}

std::wstring VirtualClock::Text(std::int64_t time)
{
    return DateAndTimeText(LocalMoment(time));
}

} // namespace sim
