#include "explore/harness/Chosen.h"
#include "explore/harness/Options.h"
#include "explore/log/LogExploration.h"

#include <cstdio>
#include <memory>

using namespace explore;

namespace
{

// What is played of a story: in every order within these limits, and so often by chance.
struct Share
{
    std::vector<Limits> limits;
    unsigned byChance;
};

Share ShareOf(Options const& options, Story const& story)
{
    if (options.isShort)
    {
        return {{{2, 0}, {0, 1}}, 200};
    }
    return {story.processes.size() > 2 ? std::vector<Limits>{{2, 0}, {1, 1}} : std::vector<Limits>{{2, 1}}, 20'000};
}

int Refuse(std::string const& why)
{
    std::fprintf(stderr, "explore log: %s\n", why.c_str());
    return 2;
}

// Plays one again and shows each step.
int Replay(PlayId const& id)
{
    auto const* const story = FindNamed(Stories(), id.story);
    auto const path = PathOf(id, FaultNames());
    if (story == nullptr || !path)
    {
        return Refuse("there is no play " + TextOf(id));
    }
    AlongPath along(*path);
    LogPlay play(*story);
    play.Run([&](Turn const& turn) {
        auto const decision = along.Of(turn);
        auto const isFault = decision.kind == Decision::Kind::Fault;
        auto const process = isFault ? turn.Ordinary() : decision.number;
        std::printf("%5u  %c  %s%s\n", turn.step, 'A' + process, play.System().kernel.PendingOf(process),
                    isFault ? (": " + FaultNames()[decision.number]).c_str() : "");
        return decision;
    });
    auto const verdict = Judge(play.Record());
    std::printf("\n%s\n", verdict.outcome.c_str());
    auto isRight = true;
    for (auto const& [kind, what, rule] : verdict.flaws)
    {
        std::printf("%s: %s%s\n", kind.c_str(), what.c_str(),
                    rule.empty() ? "" : (" (by the rules: " + rule + ")").c_str());
        isRight = isRight && !rule.empty();
    }
    std::printf("\nexplore log: played %s\n", TextOf(id).c_str());
    return isRight ? 0 : 1;
}

using Explorations = std::vector<std::unique_ptr<LogExploration>>;

// By chance in turn, until all of them have ended or the time is up.
void PlayFor(std::chrono::minutes longest, Explorations& explorations, Report const& report)
{
    while (report.Elapsed() < longest && !explorations.empty())
    {
        for (auto const& exploration : explorations)
        {
            exploration->PlayByChance();
        }
        std::erase_if(explorations, [](auto const& exploration) { return exploration->HasEnded(); });
    }
}

void Explore(Options const& options, std::vector<Story const*> const& stories, Report& report)
{
    Explorations explorations;
    for (auto const* const story : stories)
    {
        auto& exploration = *explorations.emplace_back(std::make_unique<LogExploration>(report, *story, options.seed));
        auto const share = ShareOf(options, *story);
        for (auto const& limits : share.limits)
        {
            if (!exploration.HasEnded())
            {
                exploration.PlayEveryOrder(limits);
            }
        }
        for (unsigned play = 0; play < share.byChance && !exploration.HasEnded(); ++play)
        {
            exploration.PlayByChance();
        }
    }
    if (options.longest)
    {
        PlayFor(*options.longest, explorations, report);
    }
}

} // namespace

int main(int count, char** arguments)
{
    auto const [options, error] = ParseOptions(std::span(arguments, static_cast<std::size_t>(count)).subspan(1));
    if (!error.empty())
    {
        return Refuse(error);
    }
    if (options.replay)
    {
        return Replay(*options.replay);
    }
    auto const [stories, unknown] = ChosenStories(
        Stories(), options.stories, [&](Story const& story) { return story.isShort || !options.isShort; });
    if (!unknown.empty())
    {
        return Refuse("there is no story " + unknown);
    }
    Report report("log", options.seed);
    Explore(options, stories, report);
    return report.Conclude();
}
