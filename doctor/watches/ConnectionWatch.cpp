#include "doctor/watches/ConnectionWatch.h"

namespace doctor
{

void ConnectionWatch::Add(LogPlace const& place, TakeRemark const& take)
{
    using enum Line;
    if (place.line == Connected && m_open)
    {
        take(secondConnection, *m_open, place);
    }
    if (place.line == Connected)
    {
        m_open = place;
    }
    else if (place.line == ServiceClosed || place.line == ServiceCancelled || place.line == Started)
    {
        m_open.reset();
    }
}

} // namespace doctor
