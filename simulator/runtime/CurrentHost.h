#pragma once
#include "simulator/runtime/Host.h"

#include <memory>

namespace sim
{

// The host of the runtime classes that this thread uses: its own while it is in a HostScope, otherwise the process's.
// There must be one before a class is used.
Host& CurrentHost() noexcept;

// Makes it the process's; null takes it away.
void SetProcessHost(std::shared_ptr<Host> host);

// What this thread does meanwhile belongs to that host: several processes can live in one as threads.
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

} // namespace sim
