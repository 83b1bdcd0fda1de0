#include "simulator/platform/Clock.h"

#include "simulator/base/Error.h"
#include "simulator/base/Moment.h"

namespace sim
{

namespace
{

constexpr std::int64_t maximum = 1'000LL * 365 * 24 * 60; // minutes
constexpr wchar_t minutesAhead[] = L"minutes-ahead";

} // namespace

Clock::Clock(StateFile file, TimeSource const& time) : m_file(std::move(file)), m_time(time)
{
    m_file.Read([this](StateFile::Words const& words) {
        if (words.size() != 2 || words[0] != minutesAhead)
        {
            throw Error(std::wstring(L"it is not ") + minutesAhead + L" MINUTES");
        }
        m_minutesAhead = NumberIn(words[1], minutesAhead, maximum);
    });
}

std::int64_t Clock::Now() const
{
    return m_time.Utc() + m_minutesAhead * minute;
}

void Clock::Advance(std::int64_t minutes)
{
    if (minutes > maximum - m_minutesAhead)
    {
        throw Error(L"the clock goes no further than a thousand years");
    }
    m_file.Write({{minutesAhead, std::to_wstring(m_minutesAhead + minutes)}});
    m_minutesAhead += minutes;
}

std::wstring Clock::Text(std::int64_t time)
{
    return DateAndTimeText(LocalMoment(time));
}

} // namespace sim
