#include "doctor/watches/PushWatch.h"

#include <functional>

namespace doctor
{

void PushWatch::Add(LogPlace const& place, std::string_view message)
{
    using enum Line;
    m_last = place;
    if (place.line == PushTask)
    {
        m_hadPush = true;
        m_changed.reset();
    }
    if (place.line == ChannelUri)
    {
        auto const uri = std::hash<std::string_view>()(message);
        if (m_uri != 0 && uri != m_uri && m_hadPush)
        {
            m_changed = place;
        }
        m_uri = uri;
    }
}

void PushWatch::End(TakeRemark const& take)
{
    if (m_changed && m_last.time - m_changed->time > patience)
    {
        take(noPush, *m_changed, m_last);
    }
}

} // namespace doctor
