#include "doctor/stories/Watches.h"

#include "doctor/stories/StoryTracker.h"

#include <algorithm>
#include <cstdio>
#include <functional>
#include <string>
#include <type_traits>

namespace doctor
{

using enum Line;

void RegistrationWatch::Add(LogPlace const& place, TakeRemark const& take)
{
    auto const note = [&](std::optional<LogPlace>& registered, Remark const& twice) {
        if (registered)
        {
            take(twice, *registered, place);
        }
        registered = place;
    };
    switch (place.line)
    {
    case Started:   // the package may have been installed again meanwhile
    case TaskFound: // which of the two is not said
        m_push.reset();
        m_timer.reset();
        break;
    case PushTaskRegistered:
        note(m_push, pushTaskTwice);
        break;
    case TimerTaskRegistered:
        note(m_timer, timerTaskTwice);
        break;
    default:
        break;
    }
}

void TimerWatch::Add(LogPlace const& place, TakeRemark const& take)
{
    if (m_armed && !m_late && place.time - m_armed->time > mostWait)
    {
        m_late = place;
    }
    if (m_late && place.time - m_late->time > mostLate)
    {
        End(take);
    }
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

void TimerWatch::End(TakeRemark const& take)
{
    if (m_late)
    {
        take(noTimer, *m_armed, *m_late);
    }
    m_armed.reset(); // one remark for one absence
    m_late.reset();
}

void PushWatch::Add(LogPlace const& place, std::string_view message)
{
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

void ClosingWatch::Add(LogPlace const& place, TakeRemark const& take)
{
    constexpr std::size_t most = 16;
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
    case UriNotWritten:
    case ChannelThrew:
    case ChannelRefusedSent:
    case ChannelRefusedNotSent:
    case RegistrationSignalled:
    case RegistrationTimedOut:
        if (!m_waiting.empty())
        {
            m_waiting.erase(m_waiting.begin());
        }
        break;
    case ServiceClosed:
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

void ConnectionWatch::Add(LogPlace const& place, TakeRemark const& take)
{
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

std::optional<LogTime> TimeOfCopy(std::filesystem::path const& file)
{
    using namespace std::chrono;
    std::string name;
    for (auto const each : file.filename().native())
    {
        auto const unit = static_cast<std::make_unsigned_t<std::filesystem::path::value_type>>(each);
        name.push_back(unit < 0x80 ? static_cast<char>(unit) : '?');
    }
    int at[6] = {};
    auto used = 0;
    auto const read = std::sscanf(name.c_str(), "KZEB %4d-%2d-%2d %2d-%2d-%2d.log%n", &at[0], &at[1], &at[2], &at[3],
                                  &at[4], &at[5], &used);
    auto const date = year(at[0]) / at[1] / at[2];
    if (read != 6 || static_cast<std::size_t>(used) != name.size() || !date.ok())
    {
        return std::nullopt;
    }
    return local_days(date) + hours(at[3]) + minutes(at[4]) + seconds(at[5]);
}

void CopyWatch::Begin(std::filesystem::path const& file)
{
    m_copied = TimeOfCopy(m_file);
    m_file = file;
    m_isFirstLine = true;
}

void CopyWatch::Add(LogPlace const& place, TakeRemark const& take)
{
    constexpr std::chrono::minutes mostApart{1};
    if (m_isFirstLine)
    {
        auto const isRotated = place.line == HeaderEdge;
        if (!m_last)
        {
            if (place.line != Started)
            {
                take(beginningMissing, place, place);
            }
        }
        else if (isRotated)
        {
            take(rotated, *m_last, place);
            if (m_copied && place.time - *m_copied > mostApart)
            {
                take(copyMissing, *m_last, place);
            }
        }
        else if (m_copied)
        {
            take(setAside, *m_last, place);
        }
    }
    m_isFirstLine = false;
    m_last = place;
}

} // namespace doctor
