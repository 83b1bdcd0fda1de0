#include "explore/log/Replay.h"

#include "explore/harness/Chosen.h"
#include "explore/harness/Refusal.h"
#include "explore/log/LogExploration.h"

#include <cstdio>
#include <iomanip>
#include <sstream>

namespace explore
{

namespace
{

std::string TextOf(LogPlay const& play, Turn const& turn, Decision decision)
{
    auto const isFault = decision.kind == Decision::Kind::Fault;
    auto const process = isFault ? turn.Ordinary() : decision.number;
    std::ostringstream text;
    text << std::setw(5) << turn.step << "  " << static_cast<char>('A' + process) << "  "
         << play.System().kernel.PendingOf(process) << (isFault ? ": " + FaultNames()[decision.number] : std::string())
         << '\n';
    return text.str();
}

} // namespace

int Show(Verdict const& verdict)
{
    std::printf("\n%s\n", verdict.outcome.c_str());
    auto isRight = true;
    for (auto const& [kind, what, rule] : verdict.flaws)
    {
        std::printf("%s: %s%s\n", kind.c_str(), what.c_str(),
                    rule.empty() ? "" : (" (by the rules: " + rule + ")").c_str());
        isRight = isRight && !rule.empty();
    }
    return isRight ? 0 : 1;
}

int Replay(PlayId const& id)
{
    auto const* const story = FindNamed(Stories(), id.story);
    if (story == nullptr)
    {
        return Refuse("log", NoStory("story", id.story, NamesOf(Stories())));
    }
    std::string steps;
    auto const [refusal, verdict] =
        PlayAgain(*story, id, [&](LogPlay const& play, Turn const& turn, Decision decision) {
            steps += TextOf(play, turn, decision);
        });
    if (!refusal.empty())
    {
        return Refuse("log", refusal);
    }
    std::printf("%s", steps.c_str());
    auto const code = Show(verdict);
    std::printf("\nexplore log: played %s\n", TextOf(id).c_str());
    return code;
}

} // namespace explore
