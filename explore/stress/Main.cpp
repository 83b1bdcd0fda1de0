#include "explore/harness/Options.h"
#include "explore/harness/Refusal.h"
#include "explore/harness/Report.h"
#include "explore/stress/Round.h"
#include "explore/stress/Writing.h"
#include "simulator/base/Error.h"
#include "simulator/base/Text.h"
#include "simulator/base/UnixPath.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <span>
#include <string>

using namespace explore;
using namespace explore::stress;

namespace
{

constexpr Share fullShare{.places = 10, .lines = 10'000};
constexpr Share shortShare{.places = 5, .lines = 8'000};

// A round's ID is its share and its seed: "full-7".
constexpr std::string_view fullName = "full-";
constexpr std::string_view shortName = "short-";

PlayId IdOf(bool isShort, std::uint64_t seed)
{
    return {std::string(isShort ? shortName : fullName) + std::to_string(seed)};
}

struct Wanted
{
    bool isShort;
    std::uint64_t seed;
};

std::optional<Wanted> WantedBy(PlayId const& id)
{
    auto const isShort = id.story.starts_with(shortName);
    auto const name = isShort ? shortName : fullName;
    std::string_view const number = std::string_view(id.story).substr(std::min(name.size(), id.story.size()));
    std::uint64_t seed = 0;
    std::from_chars(number.data(), number.data() + number.size(), seed);
    return id == IdOf(isShort, seed) ? std::optional(Wanted{isShort, seed}) : std::nullopt;
}

unsigned long long Number(std::uint64_t number)
{
    return number;
}

// An empty copy is of one that was killed.
std::ptrdiff_t RotationsIn(StressRecord const& record)
{
    return std::ranges::count_if(record.files, [](LogText const& file) { return file.isCopy && !file.lines.empty(); });
}

void Print(RoundFigures const& figures, StressRecord const& record, StressCount const& count)
{
    std::printf("  %llu lines in %.1f s: %.0f lines a second, the slowest in %.1f ms\n", Number(figures.lines),
                figures.seconds, static_cast<double>(figures.lines) / figures.seconds,
                static_cast<double>(figures.slowest) / 1'000);
    std::printf("  %u kills, %u of them within a line, %u while the log was opened; %lld rotations\n", figures.kills,
                figures.killsWithinLine, figures.killsWhileOpening, static_cast<long long>(RotationsIn(record)));
    std::printf("  by the rules, where one was killed: %llu lines whole, %llu cut; %llu copies repeated; %llu copies "
                "empty\n",
                Number(count.inFlight), Number(count.cut), Number(count.repeated), Number(count.empty));
    std::printf("  %llu torn, %llu doubled, %llu lost, %llu silent of %llu lines in %zu files\n",
                Number(count.torn.times), Number(count.doubled.times), Number(count.lost.times),
                Number(count.silent.times), Number(count.lines), record.files.size());
    static_cast<void>(std::fflush(stdout));
}

// What is wrong, of each kind.
std::vector<std::pair<std::string, Found>> Wrong(RoundFigures const& figures, StressRecord const& record,
                                                 StressCount const& count)
{
    Found untried;
    if (figures.kills == 0)
    {
        untried.Add("nobody was killed");
    }
    if (RotationsIn(record) == 0)
    {
        untried.Add("the log was not rotated");
    }
    std::vector<std::pair<std::string, Found>> wrong{
        {"torn", count.torn},        {"doubled", count.doubled}, {"lost", count.lost}, {"silent", count.silent},
        {"no mark", count.unmarked}, {"ended", figures.ended},   {"untried", untried},
    };
    std::erase_if(wrong, [](auto const& kind) { return kind.second.times == 0; });
    return wrong;
}

void PlayRound(Report& report, bool isShort, std::uint64_t seed)
{
    auto const id = IdOf(isShort, seed);
    auto const share = isShort ? shortShare : fullShare;
    std::printf("%s: %u processes, %llu lines each\n", TextOf(id).c_str(), share.places, Number(share.lines));
    Round round(share, seed);
    auto const figures = round.Play();
    auto const record = round.Record();
    auto const count = CountLines(record);
    Print(figures, record, count);
    auto const wrong = Wrong(figures, record, count);
    std::string outcome;
    for (auto const& [kind, found] : wrong)
    {
        report.Found(kind, id, std::to_string(found.times) + " times, first: " + found.first);
        outcome += (outcome.empty() ? "" : ", ") + kind;
    }
    report.Played(id, outcome.empty() ? "every line once and whole" : outcome);
    if (wrong.empty())
    {
        round.Remove();
        return;
    }
    std::printf("kept for a look: %s\n", sim::UnixPath(round.Folder()).c_str());
}

constexpr std::string_view subject = "stress";

int Explore(Options const& options)
{
    auto wanted = options.replay ? WantedBy(*options.replay) : Wanted{options.isShort, options.seed};
    if (!wanted)
    {
        return Refuse(subject, "there is no round " + TextOf(*options.replay));
    }
    Report report("stress", wanted->seed);
    do
    {
        PlayRound(report, wanted->isShort, wanted->seed++);
    } while (options.longest && report.Elapsed() < *options.longest);
    return report.Conclude();
}

} // namespace

int main(int count, char** words)
try
{
    std::span const arguments(words, static_cast<std::size_t>(count));
    if (count == 4 && std::string_view(arguments[1]) == "--writer")
    {
        return WriteLines(sim::FromUtf8(arguments[2]), static_cast<std::uint32_t>(std::stoul(arguments[3])));
    }
    std::vector<char const*> const given(arguments.begin() + 1, arguments.end());
    auto const [options, error] = ParseOptions(given);
    if (!error.empty() || !options.stories.empty())
    {
        return Refuse(subject, error.empty() ? "there is no story " + options.stories.front() : error);
    }
    return Explore(options);
}
catch (std::exception const& error)
{
    return Refuse(subject, sim::ToUtf8(sim::ReasonOf(error)));
}
