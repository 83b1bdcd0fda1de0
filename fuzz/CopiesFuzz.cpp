// The names in a log's folder: which are deleted, against the rules applied to each name on its own.
#include "fuzz/Choices.h"
#include "fuzz/Demand.h"
#include "logging/OldCopies.h"

#include <algorithm>
#include <vector>

using namespace fuzz;
using namespace zant;

namespace
{

using Names = std::vector<std::wstring>;

bool BeginsWith(std::wstring const& text, std::wstring const& start)
{
    return text.compare(0, start.size(), start) == 0;
}

std::wstring SomeDate(Choices& choices)
{
    static constexpr std::array dates = {L"2024-1-1",  L"2024-1-2",  L"2024-1-11",  L"2024-1-12",
                                         L"2024-2-29", L"2023-12-3", L"2023-12-31", L""};
    return choices.OneOf(dates);
}

// Mostly the name of a copy.
std::wstring SomeName(Choices& choices, std::wstring const& base, std::wstring const& extension)
{
    switch (choices.Below(8))
    {
    case 0:
        return choices.Units(12);
    case 1:
        return base + extension;
    case 2:
        return base + choices.Text(8, L" 0123456789-.log");
    case 3:
        return L"kzeb " + SomeDate(choices) + extension;
    default:
        return base + L" " + SomeDate(choices) + L" " + choices.Text(3, L"0123456789-") + extension;
    }
}

bool MayStay(std::wstring const& name, std::wstring const& live, Names const& days)
{
    return name == live || std::ranges::any_of(days, [&](auto const& day) { return BeginsWith(name, day); });
}

// Of those that may stay, each that has five or more above it in the order of text; of equal names the later is above.
Names ExpectedSurplus(Names const& candidates)
{
    Names surplus;
    for (std::size_t at = 0; at < candidates.size(); ++at)
    {
        std::size_t above = 0;
        for (std::size_t other = 0; other < candidates.size(); ++other)
        {
            auto const order = candidates[other].compare(candidates[at]);
            above += order > 0 || (order == 0 && other > at) ? 1 : 0;
        }
        if (above >= 5)
        {
            surplus.insert(std::ranges::upper_bound(surplus, candidates[at]), candidates[at]);
        }
    }
    return surplus;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    Choices choices({data, size});
    std::wstring const base = choices.Below(8) == 0 ? choices.Units(4) : L"KZEB";
    std::wstring const extension = choices.Below(8) == 0 ? L"" : L".log";
    auto const live = base + extension;
    Names days(choices.Below(5));
    std::ranges::generate(days, [&] { return base + L" " + SomeDate(choices); });

    OldCopies copies(base, live, days);
    Names candidates;
    while (!choices.AtEnd())
    {
        auto const name = SomeName(choices, base, extension);
        auto const isConcerned = BeginsWith(name, base);
        auto const stays = MayStay(name, live, days);
        Demand(copies.Judge(name) == (isConcerned && !stays), "which name is deleted at once");
        if (isConcerned && stays)
        {
            candidates.push_back(name);
        }
    }
    Demand(copies.TakeSurplus() == ExpectedSurplus(candidates), "the surplus");
    return 0;
}
