#include "simulator/platform/Clock.h"

#include "simulator/base/Moment.h"
#include "simulator/base/WordFile.h"

#include <cwchar>

namespace sim
{

Clock::Clock(std::wstring file, TimeSource const& time) : m_file(std::move(file)), m_time(time)
{
    auto const lines = ReadWordFile(m_file);
    if (!lines.empty() && lines[0].size() == 2 && lines[0][0] == L"minutes-ahead")
    {
        m_minutesAhead = std::wcstoll(lines[0][1].c_str(), nullptr, 10);
    }
}

std::int64_t Clock::Now() const
{
    return m_time.Utc() + m_minutesAhead * minute;
}

void Clock::Advance(std::int64_t minutes)
{
    WriteWordFile(m_file, {{L"minutes-ahead", std::to_wstring(m_minutesAhead + minutes)}});
    m_minutesAhead += minutes;
}

std::wstring Clock::Text(std::int64_t time)
{
    return DateAndTimeText(LocalMoment(time));
}

} // namespace sim
