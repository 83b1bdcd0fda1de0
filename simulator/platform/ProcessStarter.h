#pragma once
#include "simulator/base/Process.h"

#include <functional>

namespace sim
{

struct StartedProcess
{
    unsigned long error = 0; // of the system; 0: started
    unsigned long id = 0;
};

// Starts processes, stops and ends them, and tells when they end.
class ProcessStarter
{
  public:
    using Ended = std::function<void(unsigned long id, unsigned long exitCode)>;

    // Nothing is told any more when it returns.
    virtual ~ProcessStarter() = default;

    // ended: called once for each process that was started, on any thread. Once, before the first Start.
    virtual void Listen(Ended ended) = 0;

    virtual StartedProcess Start(ProcessRequest const& request) = 0;

    // Ends a process that was started here and still runs.
    virtual void Kill(unsigned long id, unsigned long exitCode) = 0;

    // Suspend stops all threads of such a process; it returns false when they do not stop, as in a process that is
    // ending. Resume restarts them. A suspended process does not outlive this object.
    virtual bool Suspend(unsigned long id) = 0;
    virtual void Resume(unsigned long id) = 0;
};

} // namespace sim
