#include "explore/faults/Flow.h"
#include "explore/faults/Plays.h"
#include "explore/faults/Worker.h"
#include "explore/harness/Chosen.h"
#include "explore/harness/Options.h"
#include "explore/harness/Refusal.h"
#include "explore/harness/Report.h"

#include <algorithm>
#include <cstdio>
#include <functional>
#include <iterator>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <thread>

namespace
{

using namespace explore;
using namespace explore::faults;

using NextPlay = std::function<std::optional<PlayId>()>;

constexpr std::string_view subject = "faults";
constexpr unsigned workers = 2;

void Tell(Report& report, PlayId const& id, Verdict const& verdict)
{
    for (auto const state : verdict.states)
    {
        report.Saw(state);
    }
    report.Played(id, id.story + ": " + (verdict.outcome.empty() ? verdict.kind : verdict.outcome));
    if (!verdict.kind.empty())
    {
        report.Found(id.story + ": " + verdict.kind, id, verdict.what);
    }
}

// Plays side by side; what each showed is told in the order in which the plays were given out only by chance.
void PlayAll(Report& report, NextPlay const& next)
{
    std::mutex mutex; // over the report and what is next
    std::vector<std::thread> threads;
    threads.reserve(workers);
    for (unsigned number = 0; number < workers; ++number)
    {
        threads.emplace_back([&] {
            Worker worker;
            for (;;)
            {
                std::unique_lock lock(mutex);
                auto const id = next();
                lock.unlock();
                if (!id)
                {
                    return;
                }
                auto const verdict = worker.Play(*id);
                lock.lock();
                Tell(report, *id, verdict);
            }
        });
    }
    std::ranges::for_each(threads, &std::thread::join);
}

NextPlay Of(std::vector<PlayId> plays)
{
    return [plays = std::move(plays), at = std::size_t{0}]() mutable {
        return at < plays.size() ? std::optional(plays[at++]) : std::nullopt;
    };
}

bool IsTimeOver(Options const& options, Report const& report)
{
    return options.longest && report.Elapsed() >= *options.longest;
}

// All of them in the order of the seed, or until the time is over.
void PlayPairsWithin(std::vector<Flow const*> const& flows, Options const& options, Report& report)
{
    PairPlays pairs(flows);
    pairs.Shuffle(options.seed);
    std::printf("  %zu pairs within one request\n", pairs.Count());
    report.Expect(pairs.Count());
    std::size_t at = 0;
    PlayAll(report, [&]() -> std::optional<PlayId> {
        return at < pairs.Count() && !IsTimeOver(options, report) ? std::optional(pairs.At(at++)) : std::nullopt;
    });
    std::printf("  %zu of %zu pairs within one request played\n", at, pairs.Count());
}

// So many, or until the time is over.
void PlayPairsByChance(std::vector<Flow const*> flows, std::size_t mostOfEach, Options const& options, Report& report)
{
    std::erase_if(flows, [](Flow const* flow) { return PairPlays({flow}).Count() == 0; });
    Random random(options.seed);
    auto left = mostOfEach * flows.size();
    report.Expect(left);
    PlayAll(report, [&]() -> std::optional<PlayId> {
        if (flows.empty() || IsTimeOver(options, report) || (mostOfEach > 0 && left == 0))
        {
            return std::nullopt;
        }
        left -= mostOfEach > 0 ? 1 : 0;
        return PairByChance(*flows[random.Below(flows.size())], random);
    });
}

// Those of one request have all their pairs played, but in the short share.
void PlayPairs(std::vector<Flow const*> const& flows, Options const& options, Report& report)
{
    constexpr std::size_t few = 2;
    constexpr std::size_t many = 60;
    if (options.isShort)
    {
        PlayPairsByChance(flows, few, options, report);
        return;
    }
    std::vector<Flow const*> requests;
    std::vector<Flow const*> others;
    std::ranges::partition_copy(flows, std::back_inserter(requests), std::back_inserter(others),
                                [](Flow const* flow) { return flow->scene.requests == 1; });
    PlayPairsByChance(others, many, options, report);
    PlayPairsWithin(requests, options, report);
    if (options.longest)
    {
        PlayPairsByChance(flows, 0, options, report);
    }
}

// The share of ./dev test: so many of them.
void TakeSome(std::vector<PlayId>& plays, std::uint64_t seed)
{
    constexpr std::size_t some = 130;
    Random random(seed);
    for (std::size_t at = 0; at < std::min(some, plays.size()); ++at)
    {
        std::swap(plays[at], plays[at + random.Below(plays.size() - at)]);
    }
    plays.resize(std::min(some, plays.size()));
}

int Explore(Options const& options, std::vector<Flow const*> const& flows)
{
    Report report("faults", options.seed);
    std::vector<PlayId> ordinary;
    std::vector<PlayId> singles;
    for (auto const* const flow : flows)
    {
        ordinary.push_back({std::string(flow->name)});
        std::ranges::move(SinglePlays(*flow), std::back_inserter(singles));
    }
    if (options.isShort)
    {
        TakeSome(singles, options.seed);
    }
    PlayAll(report, Of(std::move(ordinary)));
    PlayAll(report, Of(std::move(singles)));
    PlayPairs(flows, options, report);
    return report.Conclude();
}

int Replay(PlayId const& id, Options const& options)
{
    Report report("faults", options.seed);
    auto const verdict = Worker().Play(id);
    std::printf("%s\n", verdict.shown.c_str());
    Tell(report, id, verdict);
    return report.Conclude();
}

} // namespace

int main(int argc, char** argv)
{
    std::span const words(argv, static_cast<std::size_t>(argc));
    if (words.size() == 2 && std::string_view(words[1]) == "--worker")
    {
        return Work();
    }
    std::vector<char const*> const arguments(words.begin() + 1, words.end());
    auto const [options, error] = ParseOptions(arguments);
    if (!error.empty())
    {
        return Refuse(subject, error);
    }
    if (options.replay)
    {
        auto const* const flow = FlowOf(options.replay->story);
        auto const why =
            flow ? WhyNot(*flow, *options.replay) : NoStory("flow", options.replay->story, NamesOf(Flows()));
        return why.empty() ? Replay(*options.replay, options) : Refuse(subject, why);
    }
    auto const [flows, unknown] = ChosenStories(Flows(), options.stories, [](Flow const&) { return true; });
    return unknown.empty() ? Explore(options, flows) : Refuse(subject, NoStory("flow", unknown, NamesOf(Flows())));
}
