#include "explore/faults/Plays.h"

#include "explore/harness/Narrow.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace explore::faults
{

namespace
{

std::vector<Way> AllWays()
{
    std::vector<Way> ways = {{Way::Kind::Null},
                             {Way::Kind::Cancelled},
                             {Way::Kind::Never},
                             {Way::Kind::Ended},
                             {Way::Kind::Unheard, Results::failed},
                             {Way::Kind::Status, 1},
                             {Way::Kind::Status, 2}};
    for (auto const result : {Results::failed, Results::outOfMemory, Results::disconnected, Results::closed})
    {
        ways.push_back({Way::Kind::Now, result});
        ways.push_back({Way::Kind::Completion, result});
    }
    return ways;
}

// It goes as another one does: the app tells a lack of memory from other failures, and these from each other no more
// than one status from another one.
bool IsAsAnother(Way const& way)
{
    return way.code == Results::disconnected || way.code == Results::closed || way == Way{Way::Kind::Status, 2};
}

// What happens outside the app right before a call.
std::vector<Way> EventsIn(Flow const& flow)
{
    std::vector<Way> events = {{Way::Kind::Killed}};
    if (flow.hasHelper)
    {
        events.push_back({Way::Kind::HelperCloses});
        events.push_back({Way::Kind::HelperDies});
    }
    if (flow.hasHelper || !flow.scene.activation.empty())
    {
        events.push_back({Way::Kind::TaskCancelled});
    }
    return events;
}

void AddCallsIn(Steps const& steps, Texts& calls)
{
    for (auto const& step : steps)
    {
        if (step.kind == Step::Kind::Call)
        {
            calls.emplace_back(step.text);
        }
        AddCallsIn(step.body, calls);
        AddCallsIn(step.otherwise, calls);
    }
}

Texts CallsOfHandlers(Flow const& flow, std::vector<WayAt> const& deviations)
{
    Texts calls;
    for (auto const& steps : flow.handlers)
    {
        AddCallsIn(steps, calls);
    }
    for (auto const& [call, way] : deviations)
    {
        if (way.kind == Way::Kind::HelperCloses || way.kind == Way::Kind::HelperDies)
        {
            AddCallsIn(flow.closed, calls);
        }
        if (way.kind == Way::Kind::Killed)
        {
            calls.resize(std::min(calls.size(), call + 1));
        }
    }
    return calls;
}

PlayId IdOf(Flow const& flow, std::vector<WayAt> const& deviations)
{
    PlayId play{std::string(flow.name)};
    for (auto const& [call, way] : deviations)
    {
        play.deviations.push_back({static_cast<std::uint32_t>(call), NameOf(way)});
    }
    return play;
}

// The first after the call.
std::optional<WayAt> ByChance(Flow const& flow, Texts const& calls, std::size_t first, Random& random)
{
    if (first >= calls.size())
    {
        return std::nullopt;
    }
    auto const call = first + random.Below(calls.size() - first);
    auto const ways = WaysOf(flow, calls[call]);
    return WayAt{call, ways[random.Below(ways.size())]};
}

} // namespace

Texts CallsOf(Flow const& flow, std::vector<WayAt> const& deviations)
{
    if (!flow.handlers.empty())
    {
        return CallsOfHandlers(flow, deviations);
    }
    Reckoning reckoning(flow.scene, deviations);
    reckoning.Run(flow.rules, flow.role, flow.second);
    return reckoning.Calls();
}

std::vector<Way> WaysOf(Flow const& flow, std::wstring_view call)
{
    auto ways = AllWays();
    std::erase_if(ways, [&](Way const& way) { return !Applies(way, call); });
    std::ranges::copy(EventsIn(flow), std::back_inserter(ways));
    return ways;
}

std::vector<PlayId> SinglePlays(Flow const& flow)
{
    std::vector<PlayId> plays;
    auto const calls = CallsOf(flow);
    for (std::size_t call = 0; call < calls.size(); ++call)
    {
        for (auto const& way : WaysOf(flow, calls[call]))
        {
            plays.push_back(IdOf(flow, {{call, way}}));
        }
    }
    return plays;
}

PairPlays::PairPlays(std::vector<Flow const*> const& flows)
{
    for (auto const* const flow : flows)
    {
        auto const calls = CallsOf(*flow);
        for (std::size_t first = 0; first < calls.size(); ++first)
        {
            for (auto const& way : WaysOf(*flow, calls[first]))
            {
                if (!IsAsAnother(way))
                {
                    Add(*flow, first, way);
                }
            }
        }
    }
}

// Those of which the first one is this: the second is at a call that is made then.
void PairPlays::Add(Flow const& flow, std::size_t first, Way const& way)
{
    auto const calls = CallsOf(flow, {{first, way}});
    for (auto second = first + 1; second < calls.size(); ++second)
    {
        for (auto const& other : WaysOf(flow, calls[second]))
        {
            if (!IsAsAnother(other))
            {
                m_pairs.push_back({&flow, static_cast<std::uint16_t>(first), static_cast<std::uint16_t>(second),
                                   PlaceOf(way), PlaceOf(other)});
            }
        }
    }
}

std::uint8_t PairPlays::PlaceOf(Way const& way)
{
    auto const found = std::ranges::find(m_ways, way);
    auto const place = static_cast<std::uint8_t>(found - m_ways.begin());
    if (found == m_ways.end())
    {
        m_ways.push_back(way);
    }
    return place;
}

void PairPlays::Shuffle(std::uint64_t seed)
{
    Random random(seed);
    for (auto left = m_pairs.size(); left > 1; --left)
    {
        std::swap(m_pairs[left - 1], m_pairs[random.Below(left)]);
    }
}

PlayId PairPlays::At(std::size_t number) const
{
    auto const& [flow, first, second, firstWay, secondWay] = m_pairs[number];
    return IdOf(*flow, {{first, m_ways[firstWay]}, {second, m_ways[secondWay]}});
}

PlayId PairByChance(Flow const& flow, Random& random)
{
    for (;;)
    {
        auto const one = ByChance(flow, CallsOf(flow), 0, random);
        auto const other = one ? ByChance(flow, CallsOf(flow, {*one}), one->call + 1, random) : std::nullopt;
        if (one && other)
        {
            return IdOf(flow, {*one, *other});
        }
    }
}

std::optional<std::vector<WayAt>> WaysIn(PlayId const& play)
{
    std::vector<WayAt> deviations;
    for (auto const& [step, what] : play.deviations)
    {
        auto const way = WayOf(what);
        if (!way)
        {
            return std::nullopt;
        }
        deviations.push_back({step, *way});
    }
    return deviations;
}

std::string WhyNot(Flow const& flow, PlayId const& play)
{
    std::vector<WayAt> before;
    for (auto const& [step, what] : play.deviations)
    {
        auto const calls = CallsOf(flow, before);
        auto const first = before.empty() ? 0 : before.back().call + 1;
        if (step < first || step >= calls.size())
        {
            return "there is no call " + std::to_string(step) + " here; " +
                   (first < calls.size() ? "there are " + std::to_string(first) + " to " : "the last one is ") +
                   std::to_string(calls.size() - 1);
        }
        auto const ways = WaysOf(flow, calls[step]);
        auto const way = std::ranges::find_if(ways, [&](Way const& possible) { return NameOf(possible) == what; });
        if (way == ways.end())
        {
            auto why =
                "call " + std::to_string(step) + ", " + Narrow(calls[step]) + ", cannot go " + what + "; it can:";
            for (auto const& possible : ways)
            {
                why += ' ' + NameOf(possible);
            }
            return why;
        }
        before.push_back({step, *way});
    }
    return {};
}

} // namespace explore::faults
