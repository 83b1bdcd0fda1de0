#include "doctor/watches/TimerWatch.h"

namespace doctor
{

void TimerWatch::Add(LogPlace const& place, TakeRemark const& take)
{
    using enum Line;
    if (m_armed && !m_late && place.time - m_armed->time > mostWait)
    {
        m_late = place;
    }
    if (m_late && place.time - m_late->time > mostLate)
    {
        Tell(take);
    }
    m_last = place;
    switch (place.line)
    {
    case TimerTaskRegistered:
    case TimerTask:
        m_armed = place;
        m_late.reset();
        break;
    case RemovalRequested:
    case ExitRequested: // removes the tasks as well
        m_armed.reset();
        m_late.reset();
        break;
    default:
        break;
    }
}

void TimerWatch::Tell(TakeRemark const& take)
{
    if (m_armed && m_late)
    {
        take(noTimer, *m_armed, *m_late);
    }
    m_armed.reset(); // one remark for one absence
    m_late.reset();
}

void TimerWatch::End(std::optional<LogTime> asOf, TakeRemark const& take)
{
    if (m_late && asOf && *asOf - m_late->time > mostLate)
    {
        Tell(take);
    }
    else if (m_armed && !m_late && asOf && *asOf - m_armed->time > mostWait)
    {
        take(noLine, *m_armed, m_last);
    }
}

} // namespace doctor
