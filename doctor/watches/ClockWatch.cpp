#include "doctor/watches/ClockWatch.h"

#include "doctor/stories/StoryTracker.h"

namespace doctor
{

void ClockWatch::Add(LogPlace const& place, TakeRemark const& take)
{
    if (m_latest && place.time + StoryTracker::mostDisorder < m_latest->time)
    {
        take(clockSetBack, *m_latest, place);
        m_latest.reset();
    }
    if (!m_latest || place.time > m_latest->time)
    {
        m_latest = place;
    }
}

} // namespace doctor
