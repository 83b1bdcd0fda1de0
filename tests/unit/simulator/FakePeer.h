#pragma once
#include "simulator/transport/Peer.h"

#include <vector>

// A process at the other end of a connection: what it was sent.
class FakePeer : public sim::Peer
{
  public:
    void Send(sim::Message const& message) override { received.push_back(message); }

    std::vector<sim::Message> received;
};
