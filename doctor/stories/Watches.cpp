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
    auto const note = [&](Task& task) {
        if (task.registered)
        {
            task.twice = {*task.registered, place};
        }
        task.registered = place;
    };
    auto const end = [&](Task& task, Remark const& wasTwice) {
        if (task.twice)
        {
            take(wasTwice, task.twice->first, task.twice->second);
        }
        task = {};
    };
    switch (place.line)
    {
    case Started: // the package may have been installed again meanwhile
        m_push.registered.reset();
        m_timer.registered.reset();
        break;
    case TaskFound: // which of the two is not said
        end(m_push, pushTaskWasTwice);
        end(m_timer, timerTaskWasTwice);
        break;
    case PushTaskRegistered:
        note(m_push);
        break;
    case TimerTaskRegistered:
        note(m_timer);
        break;
    default:
        break;
    }
}

void RegistrationWatch::End(TakeRemark const& take)
{
    if (m_push.twice)
    {
        take(pushTaskTwice, m_push.twice->first, m_push.twice->second);
    }
    if (m_timer.twice)
    {
        take(timerTaskTwice, m_timer.twice->first, m_timer.twice->second);
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
    take(noTimer, *m_armed, *m_late);
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
    auto const wide = file.filename();
    std::string name;
    for (auto const each : wide.native())
    {
        auto const unit = static_cast<std::make_unsigned_t<std::filesystem::path::value_type>>(each);
        name.push_back(unit < 0x80 ? static_cast<char>(unit) : '?');
    }
    int at[6] = {};
    auto used = 0;
    auto const read = std::sscanf(name.c_str(), "KZEB %4d-%2d-%2d %2d-%2d-%2d.log%n", &at[0], &at[1], &at[2], &at[3],
                                  &at[4], &at[5], &used);
    auto const date = year(at[0]) / at[1] / at[2];
    if (read != 6 || static_cast<std::size_t>(used) != name.size() || !date.ok() || at[3] > 23 || at[4] > 59 ||
        at[5] > 59)
    {
        return std::nullopt;
    }
    return local_days(date) + hours(at[3]) + minutes(at[4]) + seconds(at[5]);
}

void CopyWatch::Begin(std::filesystem::path const& file)
{
    if (m_own)
    {
        m_copied.push_back(*m_own);
    }
    m_own = TimeOfCopy(file);
    m_isFirstLine = true;
}

// A copy is named for the second before the next file's first line.
bool CopyWatch::HasCopyOf(LogTime time) const
{
    constexpr std::chrono::minutes mostApart{1};
    return std::ranges::any_of(m_copied, [&](LogTime copied) { return abs(time - copied) < mostApart; });
}

void CopyWatch::Add(LogPlace const& place, TakeRemark const& take)
{
    if (m_isFirstLine)
    {
        auto const isRotated = place.line == HeaderEdge;
        auto const hasCopy = HasCopyOf(place.time);
        auto const last = m_last.value_or(place);
        if (isRotated && m_last)
        {
            take(rotated, last, place);
        }
        if (!isRotated && hasCopy)
        {
            take(setAside, last, place);
        }
        else if (!m_last && place.line != Started)
        {
            take(beginningMissing, place, place);
        }
        else if (isRotated && !hasCopy && !m_copied.empty())
        {
            take(copyMissing, last, place);
        }
    }
    m_isFirstLine = false;
    m_last = place;
}

} // namespace doctor
