#include "explore/harness/Search.h"

#include "explore/harness/Hash.h"

#include <algorithm>
#include <array>
#include <map>
#include <utility>

namespace explore
{

namespace
{

using Kind = Decision::Kind;

constexpr std::size_t mostProcesses = 8;
constexpr std::uint64_t mostFaults = 2; // by chance

} // namespace

bool EveryOrder::Play(Limits limits)
{
    std::vector<Node> level{{{}, limits}};
    while (!level.empty())
    {
        for (auto const& node : level)
        {
            AlongPath along(node.path);
            auto const goesOn = m_playable.play(
                node.path, [&](Turn const& turn) { return along.IsAtEnd() ? Decided(turn, node) : along.Of(turn); });
            if (!goesOn)
            {
                return false;
            }
        }
        level = std::exchange(m_next, {});
    }
    return true;
}

Decision EveryOrder::Decided(Turn const& turn, Node const& node)
{
    Hash state(m_playable.state());
    state.Add(turn.current ? *turn.current + 1u : 0u);
    state.Add(node.left.preemptions * 256u + node.left.faults);
    if (!m_seen.insert(state.Value()).second)
    {
        return {Kind::LeaveOff};
    }
    AddAlternatives(turn, node);
    return {Kind::Run, turn.Ordinary()};
}

void EveryOrder::AddAlternatives(Turn const& turn, Node const& node)
{
    auto const add = [&](Decision decision, Limits left) {
        m_next.push_back({node.path, left});
        m_next.back().path.push_back({turn.step, decision});
    };
    auto const left = node.left;
    auto const cost = static_cast<std::uint8_t>(turn.current ? 1 : 0);
    if (left.preemptions >= cost)
    {
        for (auto const process : turn.ready)
        {
            if (process != turn.Ordinary())
            {
                add({Kind::Run, process}, {static_cast<std::uint8_t>(left.preemptions - cost), left.faults});
            }
        }
    }
    if (left.faults > 0)
    {
        for (std::uint8_t fault = 0; fault < m_playable.faults; ++fault)
        {
            add({Kind::Fault, fault}, {left.preemptions, static_cast<std::uint8_t>(left.faults - 1)});
        }
    }
}

bool PlayByChance(Playable const& playable, Random& random, unsigned depth, std::uint32_t steps)
{
    std::array<std::uint64_t, mostProcesses> priorities;
    std::ranges::generate(priorities, [&] { return depth + random.Next() / 2; });
    std::vector<std::uint64_t> changes(depth - 1);
    std::ranges::generate(changes, [&] { return random.Below(steps); });
    std::map<std::uint64_t, FaultNumber> faults; // by their steps
    for (auto left = playable.faults != 0 ? random.Below(mostFaults + 1) : 0; left > 0; --left)
    {
        auto const step = random.Below(steps);
        faults[step] = static_cast<FaultNumber>(random.Below(playable.faults));
    }

    Path path;
    auto const highest = [&](Turn const& turn) {
        return *std::ranges::max_element(turn.ready, {}, [&](ProcessNumber process) { return priorities[process]; });
    };
    return playable.play(path, [&](Turn const& turn) {
        for (std::size_t change = 0; change < changes.size(); ++change)
        {
            if (changes[change] == turn.step)
            {
                priorities[highest(turn)] = change;
            }
        }
        Decision decision{Kind::Run, highest(turn)};
        if (auto const fault = faults.find(turn.step); fault != faults.end())
        {
            decision = {Kind::Fault, fault->second};
        }
        if (decision != Decision{Kind::Run, turn.Ordinary()})
        {
            path.push_back({turn.step, decision});
        }
        return decision;
    });
}

} // namespace explore
