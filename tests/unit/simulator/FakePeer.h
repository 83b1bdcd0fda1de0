#pragma once
#include "simulator/protocol/Peer.h"
#include "tests/unit/simulator/MessageEquality.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <vector>

// A process at the other end of a connection: what it was sent.
class FakePeer : public sim::Peer
{
  public:
    void Send(sim::ToProcess const& message) override { received.push_back(message); }

    // Takes the answer of that number out of what was received; nullopt when there is none.
    std::optional<sim::AnyAnswer> TakeAnswer(std::uint32_t number)
    {
        auto const found = std::ranges::find_if(received, [&](auto const& message) {
            auto const* const answer = std::get_if<sim::Answer>(&message);
            return answer && answer->number == number;
        });
        if (found == received.end())
        {
            return std::nullopt;
        }
        auto content = std::get<sim::Answer>(*found).content;
        received.erase(found);
        return content;
    }

    std::vector<sim::ToProcess> received;
};

using PeerPointer = std::shared_ptr<FakePeer>;
