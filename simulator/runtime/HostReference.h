#pragma once
#include "simulator/runtime/CurrentHost.h"

#include <memory>

namespace sim
{

// The host that was current when this was made. Objects may outlive it where tests follow one another in one process,
// and have nobody to speak to then.
class HostReference
{
  public:
    HostReference() noexcept : m_host(CurrentHost().weak_from_this()) {}

    // Null when that host is no more.
    std::shared_ptr<Host> Get() const noexcept { return m_host.lock(); }

    // Nothing when that host is no more.
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
