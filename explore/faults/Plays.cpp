#include "explore/faults/Plays.h"

#include "explore/faults/model/Way.h"

#include <algorithm>
#include <iterator>

namespace explore::faults
{

namespace
{

constexpr std::uint32_t results[] = {0x80004005, 0x8007000E, 0x80010108, 0x80000013};

std::vector<Way> AllWays()
{
    std::vector<Way> ways = {{Way::Kind::Null},
                             {Way::Kind::Cancelled},
                             {Way::Kind::Never},
                             {Way::Kind::Ended},
                             {Way::Kind::Unheard, static_cast<std::int32_t>(0x80004005)},
                             {Way::Kind::Status, 1},
                             {Way::Kind::Status, 2}};
    for (auto const result : results)
    {
        ways.push_back({Way::Kind::Now, static_cast<std::int32_t>(result)});
        ways.push_back({Way::Kind::Completion, static_cast<std::int32_t>(result)});
    }
    return ways;
}

// What happens outside the app right before a call. A helper that goes away is one that is connected.
std::vector<Way> EventsIn(Flow const& flow)
{
    return flow.isRequest ? std::vector<Way>{{Way::Kind::Killed},
                                             {Way::Kind::HelperCloses},
                                             {Way::Kind::HelperDies},
                                             {Way::Kind::TaskCancelled}}
                          : std::vector<Way>{{Way::Kind::Killed}};
}

std::vector<Way> WaysOf(Flow const& flow, std::wstring_view call)
{
    auto ways = AllWays();
    std::erase_if(ways, [&](Way const& way) { return !Applies(way, call); });
    std::ranges::copy(EventsIn(flow), std::back_inserter(ways));
    return ways;
}

// The calls that the rules make of it; that the app makes the same ones is held by the play without deviations.
std::vector<std::wstring> CallsOf(Flow const& flow)
{
    Reckoning reckoning(flow.scene);
    reckoning.Run(flow.rules, flow.role, flow.beside);
    return reckoning.Calls();
}

Deviation ByChance(Flow const& flow, std::vector<std::wstring> const& calls, Random& random)
{
    auto const step = random.Below(calls.size());
    auto const ways = WaysOf(flow, calls[step]);
    return {static_cast<std::uint32_t>(step), NameOf(ways[random.Below(ways.size())])};
}

} // namespace

std::vector<PlayId> SinglePlays(Flow const& flow)
{
    std::vector<PlayId> plays;
    auto const calls = CallsOf(flow);
    for (std::uint32_t step = 0; step < calls.size(); ++step)
    {
        for (auto const& way : WaysOf(flow, calls[step]))
        {
            plays.push_back({std::string(flow.name), {{step, NameOf(way)}}});
        }
    }
    return plays;
}

PlayId PairByChance(Flow const& flow, Random& random)
{
    auto const calls = CallsOf(flow);
    auto one = ByChance(flow, calls, random);
    auto other = ByChance(flow, calls, random);
    while (calls.size() > 1 && other.step == one.step)
    {
        other = ByChance(flow, calls, random);
    }
    if (other.step < one.step)
    {
        std::swap(one, other);
    }
    return {std::string(flow.name), {std::move(one), std::move(other)}};
}

} // namespace explore::faults
