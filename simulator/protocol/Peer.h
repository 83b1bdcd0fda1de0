#pragma once
#include "simulator/protocol/Messages.h"

namespace sim
{

// A process, for the platform to speak to. From any thread.
class Peer
{
  public:
    virtual ~Peer() = default;

    // Never blocks and never fails: what is said to a process that has ended is lost.
    virtual void Send(ToProcess const& message) = 0;
};

// The platform, for a process to speak to. From any thread.
class PlatformLink
{
  public:
    virtual ~PlatformLink() = default;

    // Has left this process when it returns: the process may end right afterwards. Not on the thread that messages of
    // the platform arrive on. False for one that is too large to be carried.
    virtual bool Send(FromProcess const& message) = 0;
};

} // namespace sim
