#include "explore/harness/Chosen.h"
#include "explore/harness/Options.h"
#include "explore/harness/Refusal.h"
#include "explore/log/LogExploration.h"
#include "explore/log/Replay.h"

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
    return {story.processes.size() > 2 ? std::vector<Limits>{{2, 0}, {1, 1}} : std::vector<Limits>{{2, 1}, {0, 2}},
            20'000};
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
        return Refuse("log", error);
    }
    if (options.replay)
    {
        return Replay(*options.replay);
    }
    auto const [stories, unknown] = ChosenStories(
        Stories(), options.stories, [&](Story const& story) { return story.isShort || !options.isShort; });
    if (!unknown.empty())
    {
        return Refuse("log", NoStory("story", unknown, NamesOf(Stories())));
    }
    Report report("log", options.seed);
    Explore(options, stories, report);
    return report.Conclude();
}
