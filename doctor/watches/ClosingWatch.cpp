#include "doctor/watches/ClosingWatch.h"

#include <algorithm>

namespace doctor
{

void ClosingWatch::Add(LogPlace const& place, TakeRemark const& take)
{
    using enum Line;
    constexpr std::size_t most = 16;
    auto const answer = [&](Line request) {
        if (auto const found = std::ranges::find(m_waiting, request, &LogPlace::line); found != m_waiting.end())
        {
            m_waiting.erase(found);
        }
    };
    switch (place.line)
    {
    case Started:
        m_waiting.clear();
        break;
    case ChannelRequested:
    case RegistrationRequested:
        m_waiting.resize(std::min(m_waiting.size(), most - 1));
        m_waiting.push_back(place);
        break;
    // Behind these the reply is on its way, and a helper that has it may close at once.
    case UriFound:
    case UriNotFound:
    case ChannelThrew:
    case ChannelRefusedSent:
    case ChannelRefusedNotSent:
        answer(ChannelRequested);
        break;
    case RegistrationSignalled:
    case RegistrationTimedOut:
        answer(RegistrationRequested);
        break;
    case ServiceClosed:
    case ServiceCancelled:
        for (auto const& request : m_waiting)
        {
            take(closedInRequest, request, place);
        }
        m_waiting.clear();
        break;
    default:
        break;
    }
}

} // namespace doctor
