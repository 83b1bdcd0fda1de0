#include "simulator/platform/AppLifetime.h"

namespace sim
{

AppLifetime::AppLifetime(AppProcess& app, TaskInstances const& instances, Journal& journal, Dispatcher& dispatcher,
                         Limits const& limits)
    : m_app(app), m_instances(instances), m_journal(journal), m_dispatcher(dispatcher), m_limits(limits)
{
}

void AppLifetime::CheckIdle()
{
    if (IsIdle())
    {
        m_isSuspending = false;
        m_journal.Add(L"app-idle");
        SetTimer(m_limits.idle, &AppLifetime::RaiseSuspending);
    }
}

void AppLifetime::Suspend()
{
    m_app.Activate(Suspension{});
    m_isOnRequest = true;
    SetTimer(0, nullptr);
}

void AppLifetime::SuspendingTaken()
{
    m_isSuspending = true;
    SetTimer(m_limits.suspending, &AppLifetime::SuspendingCompleted);
}

void AppLifetime::SuspendingCompleted()
{
    if (!std::exchange(m_isSuspending, false) || m_instances.Count() != 0 || !m_app.HasTakenAll())
    {
        return;
    }
    m_app.Suspend();
    SetTimer(m_limits.suspended, m_isOnRequest ? nullptr : &AppLifetime::EndSuspended);
}

void AppLifetime::SetTimer(unsigned milliseconds, void (AppLifetime::*work)())
{
    m_dispatcher.CancelTimer(m_timer);
    m_timer = work ? m_dispatcher.SetTimer(milliseconds, [this, work] { (this->*work)(); }) : Dispatcher::TimerId();
}

// The user may have launched the app since the timer was set.
void AppLifetime::RaiseSuspending()
{
    if (IsIdle())
    {
        m_app.Activate(Suspension{});
        m_isOnRequest = false;
        SuspendingTaken(); // the deadline runs from now on: the UI thread may hang
    }
}

void AppLifetime::EndSuspended()
{
    if (m_app.IsSuspended())
    {
        m_app.Terminate();
    }
}

} // namespace sim
