#pragma once
#include "explore/faults/Flow.h"
#include "explore/harness/PlayId.h"
#include "explore/harness/Random.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace explore::faults
{

// The calls that the rules make of it; that the app makes the same ones is held by each play in one order. Of handlers
// that run at the same time the most that they can make.
Texts CallsOf(Flow const& flow, std::vector<WayAt> const& deviations = {});

// Each way that a call of the flow can go, with what happens outside the app right before it.
std::vector<Way> WaysOf(Flow const& flow, std::wstring_view call);

// Each call of a flow in each way that it can go.
std::vector<PlayId> SinglePlays(Flow const& flow);

// Each two calls of the flows, each in each way that leads to something else than another one does.
class PairPlays
{
  public:
    explicit PairPlays(std::vector<Flow const*> const& flows);

    // Puts them into an order that depends on the seed alone.
    void Shuffle(std::uint64_t seed);

    std::size_t Count() const noexcept { return m_pairs.size(); }
    PlayId At(std::size_t number) const;

  private:
    // Half a million of them.
    struct Pair
    {
        Flow const* flow;
        std::uint16_t first; // calls
        std::uint16_t second;
        std::uint8_t firstWay; // places in m_ways
        std::uint8_t secondWay;
    };

    void Add(Flow const& flow, std::size_t first, Way const& way);
    std::uint8_t PlaceOf(Way const& way);

    std::vector<Way> m_ways;
    std::vector<Pair> m_pairs;
};

// Two calls in some way, of a flow that has pairs.
PlayId PairByChance(Flow const& flow, Random& random);

// The ways of a play. Nothing where one is not known.
std::optional<std::vector<WayAt>> WaysIn(PlayId const& play);

// Why a play of the flow cannot be, and what can be instead; empty where it can.
std::string WhyNot(Flow const& flow, PlayId const& play);

} // namespace explore::faults
