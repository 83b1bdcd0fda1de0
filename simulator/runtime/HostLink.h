#pragma once
#include "simulator/runtime/Runtime.h"

namespace sim
{

// The host that was the process's when this was made. Objects may outlive it where tests follow one another in one
// process, and have nobody to speak to then.
class HostLink
{
  public:
    HostLink() noexcept : m_number(HostNumber()) {}

    bool IsCurrent() const noexcept { return m_number == HostNumber(); }

    // Nothing when that host has gone.
    void Tell(Message const& words) const
    {
        if (IsCurrent())
        {
            CurrentHost().Tell(words);
        }
    }

  private:
    unsigned m_number;
};

} // namespace sim
