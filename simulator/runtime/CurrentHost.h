#pragma once
#include "simulator/runtime/Host.h"

#include <memory>

namespace sim
{

// The host of the runtime classes that this thread uses: its own while it is in a HostScope, otherwise the process's.
// There must be one before a class is used.
Host& CurrentHost() noexcept;

// Sets the process's host; null removes it.
void SetProcessHost(std::shared_ptr<Host> host);

// Makes a host the current one of this thread, for its own lifetime: threads can stand for several processes.
class HostScope
{
  public:
    // host: outlives this.
    explicit HostScope(Host& host) noexcept;
    HostScope(HostScope const&) = delete;
    HostScope& operator=(HostScope const&) = delete;
    ~HostScope();

  private:
    Host* m_before;
};

// The host that was current when this was made. Objects may outlive it, where tests follow one another in one process.
class HostReference
{
  public:
    HostReference() noexcept : m_host(CurrentHost().weak_from_this()) {}

    // Null when that host is destroyed.
    std::shared_ptr<Host> Get() const noexcept { return m_host.lock(); }

    // Does nothing when that host is destroyed.
    void Tell(FromProcess const& message) const
    {
        if (auto const host = Get())
        {
            host->Tell(message);
        }
    }

  private:
    std::weak_ptr<Host> m_host;
};

} // namespace sim
