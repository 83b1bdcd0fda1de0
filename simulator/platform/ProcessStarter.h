#pragma once
#include "simulator/base/Process.h"

#include <functional>

namespace sim
{

struct StartedProcess
{
    unsigned long error = 0; // the system's; 0 for success
    unsigned long id = 0;
};

// Starts, suspends and terminates processes, and reports when they end.
class ProcessStarter
{
  public:
    using Ended = std::function<void(unsigned long id, unsigned long exitCode)>;

    // No callback runs after it returns.
    virtual ~ProcessStarter() = default;

    // ended: called once for each started process, on any thread. Called once, before the first Start.
    virtual void Listen(Ended ended) = 0;

    virtual StartedProcess Start(ProcessRequest const& request) = 0;

    // Terminates a process that was started here and still runs.
    virtual void Kill(unsigned long id, unsigned long exitCode) = 0;

    // Suspends all threads of a process that was started here; false on failure, as for a process that is ending.
    // Resume reverses it. A suspended process does not outlive this object.
    virtual bool Suspend(unsigned long id) = 0;
    virtual void Resume(unsigned long id) = 0;
};

} // namespace sim
