#include "explore/harness/Path.h"

#include <algorithm>

namespace explore
{

namespace
{

using Kind = Decision::Kind;

std::string NameOf(Decision decision, std::vector<std::string> const& faults)
{
    return decision.kind == Kind::Run ? std::string(1, static_cast<char>('A' + decision.number))
                                      : faults[decision.number];
}

std::optional<Decision> DecisionOf(std::string const& name, std::vector<std::string> const& faults)
{
    if (name.size() == 1 && name.front() >= 'A' && name.front() <= 'Z')
    {
        return Decision{Kind::Run, static_cast<std::uint8_t>(name.front() - 'A')};
    }
    auto const fault = std::ranges::find(faults, name);
    return fault != faults.end()
               ? std::optional(Decision{Kind::Fault, static_cast<std::uint8_t>(fault - faults.begin())})
               : std::nullopt;
}

} // namespace

PlayId PlayIdOf(std::string const& story, Path const& path, std::vector<std::string> const& faults)
{
    PlayId play{story};
    for (auto const& [step, decision] : path)
    {
        play.deviations.push_back({step, NameOf(decision, faults)});
    }
    return play;
}

std::optional<Path> PathOf(PlayId const& play, std::vector<std::string> const& faults)
{
    Path path;
    for (auto const& [step, what] : play.deviations)
    {
        auto const decision = DecisionOf(what, faults);
        if (!decision)
        {
            return std::nullopt;
        }
        path.push_back({step, *decision});
    }
    return path;
}

Decision AlongPath::Of(Turn const& turn)
{
    auto decision = Decision{Kind::Run, turn.Ordinary()};
    if (!IsAtEnd() && m_path[m_next].step == turn.step)
    {
        decision = m_path[m_next++].decision;
    }
    auto const canBe = decision.kind != Kind::Run || std::ranges::find(turn.ready, decision.number) != turn.ready.end();
    return canBe ? decision : Decision{Kind::Run, turn.Ordinary()};
}

} // namespace explore
