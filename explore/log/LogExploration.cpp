#include "explore/log/LogExploration.h"

#include "explore/harness/Refusal.h"
#include "explore/harness/Shorten.h"

#include <algorithm>

namespace explore
{

namespace
{

constexpr unsigned depth = 3; // of plays by chance

bool ShowsFlaw(Replayed const& replayed, std::string const& kind)
{
    return replayed.refusal.empty() && std::ranges::any_of(replayed.verdict.flaws, [&](Flaw const& flaw) {
               return flaw.kind == kind && flaw.rule.empty();
           });
}

// Of a play with a deviation whose name is none.
std::string RefusalOf(Story const& story, PlayId const& id)
{
    auto const isUnknown = [](Deviation const& deviation) { return !PathOf({{}, {deviation}}, FaultNames()); };
    std::vector<std::string> choices;
    choices.reserve(story.processes.size() + FaultNames().size());
    for (std::size_t process = 0; process < story.processes.size(); ++process)
    {
        choices.emplace_back(1, static_cast<char>('A' + process));
    }
    choices.insert(choices.end(), FaultNames().begin(), FaultNames().end());
    return NoChoice(*std::ranges::find_if(id.deviations, isUnknown), choices);
}

} // namespace

Replayed PlayAgain(Story const& story, PlayId const& id, OnStep const& onStep)
{
    auto const path = PathOf(id, FaultNames());
    if (!path)
    {
        return {RefusalOf(story, id)};
    }
    AlongPath along(*path);
    LogPlay play(story);
    play.Run([&](Turn const& turn) {
        auto const decision = along.Of(turn);
        if (onStep)
        {
            onStep(play, turn, decision);
        }
        return decision;
    });
    return {along.Refusal(FaultNames()), Judge(play.Record())};
}

void LogExploration::PlayEveryOrder(Limits limits)
{
    EveryOrder(m_playable).Play(limits);
}

void LogExploration::PlayByChance()
{
    explore::PlayByChance(m_playable, m_random, depth, m_mostSteps + 1);
}

bool LogExploration::Play(Path const& path, Decide const& decide)
{
    LogPlay play(m_story);
    m_play = &play;
    auto const isWhole = play.Run([&](Turn const& turn) {
        m_mostSteps = std::max(m_mostSteps, turn.step);
        m_report.Saw(play.System().StateHash());
        return decide(turn);
    });
    if (isWhole)
    {
        Tell(PlayIdOf(m_story.name, path, FaultNames()), Judge(play.Record()));
    }
    else
    {
        m_report.LeftOff();
    }
    return !m_hasEnded;
}

void LogExploration::Tell(PlayId const& id, Verdict const& verdict)
{
    m_report.Played(id, verdict.outcome);
    for (auto const& [kind, what, rule] : verdict.flaws)
    {
        if (!rule.empty())
        {
            m_report.Lost(std::string(rule).append(": ").append(kind), id);
        }
        else if (!m_report.HasFound(kind))
        {
            auto const shortest = Shortened(
                id, [&, &flaw = kind](PlayId const& shorter) { return ShowsFlaw(PlayAgain(m_story, shorter), flaw); });
            m_report.Found(kind, shortest, what);
            m_hasEnded = true;
        }
    }
}

} // namespace explore
