#pragma once
#include "simulator/protocol/Messages.h"

namespace sim
{

// The platform's connection to a process. Any thread may use it.
class Peer
{
  public:
    virtual ~Peer() = default;

    // Never blocks and never fails: a message to a process that has ended is lost.
    virtual void Send(ToProcess const& message) = 0;
};

// A process's connection to the platform. Any thread may use it.
class PlatformLink
{
  public:
    virtual ~PlatformLink() = default;

    // The message has left this process when it returns, so that the process may end. Not to be called on the thread
    // that the platform's messages arrive on. False for a message that is too large.
    virtual bool Send(FromProcess const& message) = 0;
};

} // namespace sim
