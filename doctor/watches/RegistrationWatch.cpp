#include "doctor/watches/RegistrationWatch.h"

namespace doctor
{

void RegistrationWatch::Add(LogPlace const& place, TakeRemark const& take)
{
    using enum Line;
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

} // namespace doctor
