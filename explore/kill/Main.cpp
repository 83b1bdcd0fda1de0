#include "explore/harness/Chosen.h"
#include "explore/harness/Options.h"
#include "explore/harness/Refusal.h"
#include "explore/harness/Report.h"
#include "explore/kill/Choice.h"
#include "explore/kill/Play.h"
#include "simulator/base/Error.h"
#include "simulator/base/Text.h"

#include <algorithm>
#include <cstdio>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

namespace
{

using namespace explore;
using namespace explore::kill;

// Each with a device of its own.
constexpr unsigned workers = 2;

struct Rehearsed
{
    Story const* story;
    Reference reference;
};

struct NextPlay
{
    Rehearsed const* chosen;
    std::uint32_t killAt;
};

using Next = std::function<std::optional<NextPlay>()>;
using Stages = std::vector<std::unique_ptr<Stage>>;

constexpr std::string_view subject = "kill";

PlayId IdOf(NextPlay const& play)
{
    return {std::string(play.chosen->story->name), {{play.killAt, "kill"}}};
}

void Tell(Report& report, PlayId const& id, Played const& played)
{
    report.Saw(played.state);
    report.Played(id, id.story + ": " + played.verdict.outcome);
    for (auto const& [kind, what, rule] : played.verdict.flaws)
    {
        rule.empty() ? report.Found(id.story + ": " + kind, id, what) : report.Lost(rule, id);
    }
}

// Whether the process was ended.
bool PlayNext(Report& report, Stage& stage, NextPlay const& next, std::unique_lock<std::mutex>& lock)
{
    lock.unlock();
    Played played;
    try
    {
        played = PlayOnce(stage, *next.chosen->story, next.chosen->reference, next.killAt);
    }
    catch (sim::Error const& error)
    {
        played.verdict = {"not playable", {{"not playable", sim::ToUtf8(error.Message())}}};
    }
    lock.lock();
    Tell(report, IdOf(next), played);
    return played.isEnded;
}

// Side by side. Returns how many processes were ended.
unsigned PlayAll(Report& report, Stages const& stages, Next const& next)
{
    unsigned ended = 0;
    std::mutex mutex; // over the report, what is next, and the count
    std::vector<std::thread> threads;
    for (auto const& stage : stages)
    {
        threads.emplace_back([&] {
            std::unique_lock lock(mutex);
            while (auto const play = next())
            {
                ended += PlayNext(report, *stage, *play, lock) ? 1 : 0;
            }
        });
    }
    std::ranges::for_each(threads, &std::thread::join);
    return ended;
}

// A story ends with the first deviation.
bool HasEnded(Report const& report, Story const& story)
{
    return std::ranges::any_of(report.Findings(),
                               [&](auto const& finding) { return finding.second.shortest.story == story.name; });
}

// Of each story in turn.
std::vector<NextPlay> AllPlays(std::vector<Rehearsed> const& chosen, std::size_t mostOfEach, Random& random)
{
    std::vector<NextPlay> plays;
    std::size_t longest = 0;
    std::vector<std::vector<std::uint32_t>> orders;
    for (auto const& each : chosen)
    {
        orders.push_back(InTurn(each.reference.kinds, random));
        orders.back().resize(std::min(orders.back().size(), mostOfEach));
        longest = std::max(longest, orders.back().size());
    }
    for (std::size_t at = 0; at < longest; ++at)
    {
        for (std::size_t story = 0; story < chosen.size(); ++story)
        {
            if (at < orders[story].size())
            {
                plays.push_back({&chosen[story], orders[story][at]});
            }
        }
    }
    return plays;
}

// Drawn, for so long as is asked for.
std::optional<NextPlay> ByChance(std::vector<Rehearsed> const& chosen, Options const& options, Report const& report,
                                 Random& random)
{
    std::vector<Rehearsed const*> left;
    for (auto const& each : chosen)
    {
        if (!HasEnded(report, *each.story))
        {
            left.push_back(&each);
        }
    }
    if (left.empty() || !options.longest || report.Elapsed() >= *options.longest)
    {
        return std::nullopt;
    }
    auto const* const drawn = left[random.Below(left.size())];
    return NextPlay{drawn, static_cast<std::uint32_t>(random.Below(drawn->reference.kinds.size()))};
}

// All of them, then by chance.
Next Plays(std::vector<Rehearsed> const& chosen, Options const& options, Report const& report)
{
    constexpr std::size_t shortShare = 8;
    Random random(options.seed);
    auto plays = AllPlays(chosen, options.isShort ? shortShare : SIZE_MAX, random);
    return [plays = std::move(plays), at = std::size_t{0}, random, &chosen, &options,
            &report]() mutable -> std::optional<NextPlay> {
        while (at < plays.size() && HasEnded(report, *plays[at].chosen->story))
        {
            ++at;
        }
        return at < plays.size() ? std::optional(plays[at++]) : ByChance(chosen, options, report, random);
    };
}

std::vector<Rehearsed> RehearseAll(Stage& stage, std::vector<Story const*> const& stories)
{
    std::vector<Rehearsed> chosen;
    for (auto const* const story : stories)
    {
        chosen.push_back({story, Rehearse(stage, *story)});
        std::printf("  %s: %zu calls\n", std::string(story->name).c_str(), chosen.back().reference.kinds.size());
        static_cast<void>(std::fflush(stdout));
    }
    return chosen;
}

int Explore(Options const& options, std::vector<Story const*> const& stories)
{
    Report report("kill", options.seed);
    Stages stages;
    for (unsigned number = 0; number < workers; ++number)
    {
        stages.push_back(std::make_unique<Stage>(number));
    }
    auto const chosen = RehearseAll(*stages.front(), stories);
    if (PlayAll(report, stages, Plays(chosen, options, report)) == 0)
    {
        report.Found("nothing is ended", {std::string(stories.front()->name)},
                     "no process came to the call that should have ended it");
    }
    return report.Conclude();
}

int Replay(PlayId const& id, Options const& options)
{
    auto const* const story = FindNamed(Stories(), id.story);
    if (story == nullptr || id.deviations.size() != 1 || id.deviations.front().what != "kill")
    {
        return Refuse(subject, "there is no play " + TextOf(id));
    }
    Report report("kill", options.seed);
    Stage stage(0);
    auto const reference = Rehearse(stage, *story);
    auto const step = id.deviations.front().step;
    auto const played = PlayOnce(stage, *story, reference, step);
    if (!played.isEnded && played.verdict.flaws.empty())
    {
        return Refuse(subject, NoStep(id.deviations.front(), played.calls.size()));
    }
    for (std::size_t at = 0; at < played.calls.size(); ++at)
    {
        std::printf("%5zu  %s\n", at, played.calls[at].c_str());
    }
    for (auto const& [kind, what, rule] : played.verdict.flaws)
    {
        std::printf("%s: %s%s\n", kind.c_str(), what.c_str(),
                    rule.empty() ? "" : (" (by the rules: " + rule + ")").c_str());
    }
    Tell(report, id, played);
    return report.Conclude();
}

} // namespace

int main(int count, char** arguments)
try
{
    auto const [options, error] = ParseOptions(std::span(arguments, static_cast<std::size_t>(count)).subspan(1));
    if (!error.empty())
    {
        return Refuse(subject, error);
    }
    InstallSimulator();
    if (options.replay)
    {
        return Replay(*options.replay, options);
    }
    auto const [stories, unknown] = ChosenStories(Stories(), options.stories, [](Story const&) { return true; });
    if (!unknown.empty())
    {
        return Refuse(subject, NoStory("story", unknown, NamesOf(Stories())));
    }
    return Explore(options, stories);
}
catch (sim::Error const& error)
{
    return Refuse(subject, sim::ToUtf8(error.Message()));
}
