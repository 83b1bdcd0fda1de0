#pragma once
#include "simulator/platform/AppProcess.h"
#include "simulator/platform/Dispatcher.h"
#include "simulator/platform/Journal.h"
#include "simulator/platform/TaskInstances.h"

namespace sim
{

// The lifetime of an idle app: Suspending is raised, its process is suspended, and terminated later. An app that is
// suspended on request is not terminated.
class AppLifetime
{
  public:
    AppLifetime(AppProcess& app, TaskInstances const& instances, Journal& journal, Dispatcher& dispatcher,
                Limits const& limits);

    // Starts the idle timer if the app runs in the background only and has nothing left to do.
    void CheckIdle();

    // Raises Suspending on request, whether the app is idle or not.
    void Suspend();

    // The app has received Suspending; it has completed it. An app that is not needed is suspended then, or at the
    // deadline.
    void SuspendingTaken();
    void SuspendingCompleted();

  private:
    bool IsIdle() const { return m_instances.Count() == 0 && m_app.RunsInBackgroundOnly(); }
    void SetTimer(unsigned milliseconds, void (AppLifetime::*work)()); // replaces the previous one
    void RaiseSuspending();
    void EndSuspended();

    AppProcess& m_app;
    TaskInstances const& m_instances;
    Journal& m_journal;
    Dispatcher& m_dispatcher;
    Limits const m_limits;
    Dispatcher::TimerId m_timer;
    bool m_isSuspending = false; // Suspending is raised, and neither completed nor overdue
    bool m_isOnRequest = false;
};

} // namespace sim
