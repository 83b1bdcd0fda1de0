#include "explore/harness/Path.h"

#include "explore/harness/Refusal.h"

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

Deviation DeviationOf(Step const& step, std::vector<std::string> const& faults)
{
    return {step.step, NameOf(step.decision, faults)};
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
    for (auto const& step : path)
    {
        play.deviations.push_back(DeviationOf(step, faults));
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
    m_steps = turn.step + std::size_t{1};
    auto const ordinary = Decision{Kind::Run, turn.Ordinary()};
    if (IsAtEnd() || m_path[m_next].step != turn.step)
    {
        return ordinary;
    }
    auto const& step = m_path[m_next++];
    auto const canBe =
        step.decision.kind != Kind::Run || std::ranges::find(turn.ready, step.decision.number) != turn.ready.end();
    if (!canBe && !m_notReady)
    {
        m_notReady = {step, turn.ready};
    }
    return canBe ? step.decision : ordinary;
}

std::string AlongPath::Refusal(std::vector<std::string> const& faults) const
{
    if (m_notReady)
    {
        std::vector<std::string> choices;
        for (auto const process : m_notReady->ready)
        {
            choices.push_back(NameOf({Kind::Run, process}, faults));
        }
        choices.insert(choices.end(), faults.begin(), faults.end());
        return NoChoice(DeviationOf(m_notReady->step, faults), choices);
    }
    if (IsAtEnd())
    {
        return {};
    }
    auto const deviation = DeviationOf(m_path[m_next], faults);
    return deviation.step < m_steps ? NoSecond(deviation) : NoStep(deviation, m_steps);
}

} // namespace explore
