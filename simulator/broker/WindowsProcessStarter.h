#pragma once
#include "simulator/base/Handle.h"
#include "simulator/platform/ProcessStarter.h"

#include <list>
#include <memory>
#include <mutex>

namespace sim
{

// Starts real processes and waits on their handles.
class WindowsProcessStarter : public ProcessStarter
{
  public:
    // Throws Error when the system has no job object for it.
    WindowsProcessStarter();
    ~WindowsProcessStarter() override;

    void Listen(Ended ended) override { m_ended = std::move(ended); }

    StartedProcess Start(ProcessRequest const& request) override;
    void Kill(unsigned long id, unsigned long exitCode) override;
    bool Suspend(unsigned long id) override;
    void Resume(unsigned long id) override;

  private:
    class Watch;

    // Null for one that has ended, or was not started here. The caller holds the lock.
    Watch* Running(unsigned long id) const;

    Ended m_ended;
    Handle m_job;       // terminates suspended processes, even if this process is killed
    std::mutex m_mutex; // guards m_watches
    std::list<std::unique_ptr<Watch>> m_watches;
};

} // namespace sim
