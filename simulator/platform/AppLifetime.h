#pragma once
#include "simulator/platform/AppProcess.h"
#include "simulator/platform/Dispatcher.h"
#include "simulator/platform/Journal.h"
#include "simulator/platform/TaskInstances.h"

namespace sim
{

// What becomes of an app that nobody needs: Suspending is raised, then its process is suspended, and ended later. One
// that is suspended on request is not ended.
class AppLifetime
{
  public:
    AppLifetime(AppProcess& app, TaskInstances const& instances, Journal& journal, Dispatcher& dispatcher,
                Limits const& limits);

    // The app may have nothing left to do: then this begins after a while, if it is in the background only.
    void Watch();

    // The system suspends the app, whether it has been idle or not.
    void Suspend();

    // The app is at Suspending; the app has dealt with it. Not needed, it is suspended: then, or at the deadline.
    void SuspendingTaken();
    void SuspendingCompleted();

  private:
    bool IsIdle() const { return m_instances.Count() == 0 && m_app.RunsInBackgroundOnly(); }
    void SetTimer(unsigned milliseconds, void (AppLifetime::*work)()); // in place of the one before
    void Raise();
    void EndSuspended();

    AppProcess& m_app;
    TaskInstances const& m_instances;
    Journal& m_journal;
    Dispatcher& m_dispatcher;
    Limits const m_limits;
    Dispatcher::TimerId m_timer = 0;
    bool m_isRaised = false; // and neither completed nor overdue
    bool m_isOnRequest = false;
};

} // namespace sim
