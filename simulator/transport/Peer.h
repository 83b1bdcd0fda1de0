#pragma once
#include "simulator/transport/Message.h"

namespace sim
{

// The other end of a connection, to speak to. May be called from any thread.
class Peer
{
  public:
    virtual ~Peer() = default;

    // Never blocks and never fails: what is said to an end that has gone is lost.
    virtual void Send(Message const& message) = 0;
};

} // namespace sim
