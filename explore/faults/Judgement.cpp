#include "explore/faults/Judgement.h"

#include "explore/faults/Plays.h"
#include "explore/faults/model/Line.h"
#include "explore/faults/model/SideBySide.h"
#include "explore/harness/Narrow.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <numeric>
#include <set>

namespace explore::faults
{

namespace
{

using Positions = std::vector<std::size_t>;

// From these positions in the sequences on. failed: from where it is known not to go on.
bool GoesOn(Texts const& texts, std::vector<Texts> const& sequences, Positions& at, std::set<Positions>& failed)
{
    auto const text = std::accumulate(at.begin(), at.end(), std::size_t{0});
    if (text == texts.size())
    {
        return true;
    }
    if (failed.contains(at))
    {
        return false;
    }
    for (std::size_t i = 0; i < sequences.size(); ++i)
    {
        if (at[i] < sequences[i].size() && sequences[i][at[i]] == texts[text])
        {
            ++at[i];
            if (GoesOn(texts, sequences, at, failed))
            {
                return true;
            }
            --at[i];
        }
    }
    failed.insert(at);
    return false;
}

std::string Difference(std::string const& expected, std::string const& seen)
{
    return "  by the rules:" + expected + "\n  seen:" + seen;
}

void AddLinesOf(Steps const& steps, Texts& lines)
{
    for (auto const& step : steps)
    {
        if (step.kind == Step::Kind::Info || step.kind == Step::Kind::Error)
        {
            lines.push_back(LineOf(step));
        }
        AddLinesOf(step.body, lines);
        AddLinesOf(step.otherwise, lines);
    }
}

void AddLinesOf(std::vector<Steps> const& handlers, Texts& lines)
{
    for (auto const& steps : handlers)
    {
        AddLinesOf(steps, lines);
    }
}

std::string Coded(End end, std::int32_t code)
{
    char text[60];
    static_cast<void>(std::snprintf(text, sizeof text, " %s 0x%08X", NameOf(end).c_str(), static_cast<unsigned>(code)));
    return text;
}

// The process was ended: what others have of it then may still be on its way.
bool WasEnded(Outcome const& seen)
{
    return seen.end == End::Terminated || seen.end == End::Killed;
}

Judged CompareOrder(char const* name, Texts const& expected, std::vector<Texts> aside, Texts const& seen)
{
    aside.push_back(expected);
    if (IsInterleaving(seen, aside))
    {
        return {};
    }
    auto text = Shown(expected);
    aside.pop_back();
    for (auto const& texts : aside)
    {
        text += "\n   and among them" + Shown(texts);
    }
    return {name, Difference(text, Shown(seen))};
}

std::vector<Texts> PartsOf(std::vector<Aside> const& asides, Texts Aside::* part)
{
    std::vector<Texts> parts;
    parts.reserve(asides.size());
    for (auto const& aside : asides)
    {
        parts.push_back(aside.*part);
    }
    return parts;
}

Texts AnswersIn(Outcome const& outcome)
{
    Texts texts;
    for (auto const& answer : outcome.answers)
    {
        texts.emplace_back(answer.isGiven ? L"answered" : L"open");
    }
    return texts;
}

Texts ResponsesIn(Outcome const& outcome)
{
    Texts texts;
    for (auto const& answer : outcome.answers)
    {
        texts.push_back(answer.response);
    }
    return texts;
}

Texts CompletionsIn(Outcome const& outcome)
{
    Texts texts;
    for (auto const count : outcome.completions)
    {
        texts.push_back(std::to_wstring(count));
    }
    return texts;
}

// What is neither order nor end.
struct Part
{
    char const* name;
    Texts (*of)(Outcome const& outcome);
};

constexpr Part parts[] = {
    {"messages", [](Outcome const& outcome) { return outcome.messages; }},
    {"launches", [](Outcome const& outcome) { return outcome.launches; }},
    {"waits", [](Outcome const& outcome) { return outcome.waits; }},
    {"completions", CompletionsIn},
    {"tasks ended", [](Outcome const& outcome) { return Texts{std::to_wstring(outcome.tasksEnded)}; }},
    {"tasks", [](Outcome const& outcome) { return outcome.tasks; }},
    {"stored URI", [](Outcome const& outcome) { return Texts{outcome.uri}; }},
    {"answers", AnswersIn},
    {"responses", ResponsesIn},
};

bool IsEvent(Way const& way)
{
    return way.kind == Way::Kind::HelperCloses || way.kind == Way::Kind::HelperDies ||
           way.kind == Way::Kind::TaskCancelled;
}

Reckoning Reckoned(Flow const& flow, std::vector<WayAt> const& deviations)
{
    Reckoning reckoning(flow.scene, deviations);
    reckoning.Run(flow.rules, flow.role, flow.second);
    return reckoning;
}

// A helper that has closed or died may miss what was on its way.
void TakeUnheard(Outcome& expected, Outcome const& seen)
{
    expected.messages.resize(std::min(expected.messages.size(), seen.messages.size()));
    for (std::size_t i = 0; i < std::min(expected.answers.size(), seen.answers.size()); ++i)
    {
        if (seen.answers[i].response.empty())
        {
            expected.answers[i].response.clear();
        }
    }
}

// Takes out of the texts what stands at a place, so that as many are left as are expected.
Texts CutOut(Texts& texts, std::size_t place, std::size_t expected)
{
    if (texts.size() <= expected || texts.size() < place)
    {
        return {};
    }
    auto const first = texts.begin() + static_cast<std::ptrdiff_t>(place);
    auto const last = first + static_cast<std::ptrdiff_t>(texts.size() - expected);
    Texts cut(first, last);
    texts.erase(first, last);
    return cut;
}

Judged NoOrder(std::vector<Steps> const& handlers, Texts const& lines, Texts const& calls)
{
    return {"handlers", "  no order of the steps of " + std::to_string(handlers.size()) +
                            " handlers leads to these lines:" + Shown(lines) + "\n  and calls:" + Shown(calls)};
}

Judged JudgeExactly(Flow const& flow, std::vector<WayAt> const& deviations, Outcome seen)
{
    auto const reckoning = Reckoned(flow, deviations);
    auto expected = reckoning.Result();
    if (auto const& loss = reckoning.Lost())
    {
        auto const lines = CutOut(seen.lines, loss->lines, expected.lines.size());
        auto const calls = CutOut(seen.calls, loss->calls, expected.calls.size());
        if (!SideBySide(loss->handlers, {}, {}).CanLeadTo({lines, calls, 1}))
        {
            return NoOrder(loss->handlers, lines, calls);
        }
        TakeUnheard(expected, seen);
    }
    return Compare(expected, reckoning.Asides(), seen);
}

// The handlers' own part, in any order of their steps; all else is as without them.
Judged JudgeHandlers(Flow const& flow, std::vector<WayAt> const& deviations, Outcome const& seen)
{
    auto expected = Reckoned(flow, {}).Result();
    auto calls = seen.calls;
    for (auto const& [call, way] : deviations)
    {
        if (way.kind == Way::Kind::Killed && call < calls.size())
        {
            expected.end = End::Killed;
            calls.resize(call + 1);
        }
    }
    auto const isKilled = seen.end == End::Killed;
    if (!SideBySide(flow.handlers, flow.closed, deviations).CanLeadTo({seen.lines, calls, seen.tasksEnded, isKilled}))
    {
        return NoOrder(flow.handlers, seen.lines, calls);
    }
    expected.lines = seen.lines;
    expected.calls = seen.calls;
    expected.tasksEnded = seen.tasksEnded;
    return Compare(expected, {}, seen);
}

// Without the last deviation, with it, and with it at any call like the one that it has met, also where the others have
// met a call that cannot go their way.
std::vector<Outcome> Possible(Flow const& flow, std::vector<WayAt> const& deviations, Outcome const& seen)
{
    std::vector<Outcome> possible;
    auto const add = [&](std::vector<WayAt> const& ways) {
        auto const reckoning = Reckoned(flow, ways);
        auto& outcome = possible.emplace_back(reckoning.Result());
        for (auto const& aside : reckoning.Asides())
        {
            std::ranges::copy(aside.lines, std::back_inserter(outcome.lines));
        }
        if (reckoning.Lost())
        {
            AddLinesOf(reckoning.Lost()->handlers, outcome.lines);
            TakeUnheard(outcome, seen);
        }
    };
    auto const last = deviations.back();
    auto const others = std::vector<WayAt>(deviations.begin(), deviations.end() - 1);
    add(others);
    add(deviations);
    add({last});
    if (std::ranges::all_of(deviations, [](WayAt const& deviation) { return IsEvent(deviation.way); }))
    {
        add({}); // a handler that meets the second event lets the thread go on that has met the first one
    }
    for (auto const& before : {others, std::vector<WayAt>()})
    {
        auto const calls = CallsOf(flow, before);
        for (std::size_t call = 0; call < calls.size() && last.call < seen.calls.size(); ++call)
        {
            if (calls[call] == seen.calls[last.call])
            {
                auto ways = before;
                ways.push_back({call, last.way});
                add(ways);
            }
        }
    }
    return possible;
}

} // namespace

bool IsInterleaving(Texts const& texts, std::vector<Texts> const& sequences)
{
    std::size_t total = 0;
    for (auto const& sequence : sequences)
    {
        total += sequence.size();
    }
    Positions at(sequences.size());
    std::set<Positions> failed;
    return total == texts.size() && GoesOn(texts, sequences, at, failed);
}

std::string Shown(Texts const& texts)
{
    std::string shown;
    for (auto const& text : texts)
    {
        shown += "\n    " + Narrow(text);
    }
    return shown.empty() ? "\n    (nothing)" : shown;
}

std::string NameOf(End end)
{
    switch (end)
    {
    case End::Alive:
        return "alive";
    case End::Exited:
        return "exited";
    case End::Failed:
        return "failed";
    case End::NotStarted:
        return "not started";
    case End::Terminated:
        return "terminated";
    case End::Killed:
        return "killed";
    }
    return "?";
}

Judged Compare(Outcome const& expected, std::vector<Aside> const& asides, Outcome const& seen)
{
    if (auto judged = CompareOrder("lines", expected.lines, PartsOf(asides, &Aside::lines), seen.lines);
        !judged.kind.empty())
    {
        return judged;
    }
    if (expected.end != seen.end || expected.code != seen.code)
    {
        return {"end", Difference(Coded(expected.end, expected.code), Coded(seen.end, seen.code))};
    }
    for (auto const& [name, of] : parts)
    {
        if (of(expected) != of(seen) && !WasEnded(seen))
        {
            return {name, Difference(Shown(of(expected)), Shown(of(seen)))};
        }
    }
    return CompareOrder("calls", expected.calls, PartsOf(asides, &Aside::calls), seen.calls);
}

Judged HoldInvariants(Outcome const& seen, std::vector<Outcome> const& possible)
{
    auto const isAny = [&](auto const& holds) { return std::ranges::any_of(possible, holds); };
    if (!isAny([&](Outcome const& outcome) { return outcome.end == seen.end && outcome.code == seen.code; }))
    {
        return {"an end against the rules", Coded(seen.end, seen.code)};
    }
    for (auto const& line : seen.lines)
    {
        auto const count = std::ranges::count(seen.lines, line);
        if (!isAny([&](Outcome const& outcome) { return std::ranges::count(outcome.lines, line) >= count; }))
        {
            return {"a line against the rules", "  " + std::to_string(count) + " times" + Shown({line})};
        }
    }
    if (seen.linesAtExit && *seen.linesAtExit != seen.lines.size())
    {
        return {"a line after the end", "  after line " + std::to_string(*seen.linesAtExit) + Shown(seen.lines)};
    }
    for (auto const& [name, of] : parts)
    {
        if (!WasEnded(seen) && !isAny([&](Outcome const& outcome) { return of(outcome) == of(seen); }))
        {
            return {name + std::string(" against the rules"), Shown(of(seen))};
        }
    }
    return {};
}

bool IsExact(Flow const& flow, std::vector<WayAt> const& deviations)
{
    if (deviations.empty() || !flow.handlers.empty())
    {
        return true;
    }
    auto const& first = deviations.front().way;
    auto const& last = deviations.back().way;
    // A request whose deferral is not taken yet holds up the other events of its connection.
    if (flow.scene.requests > 0 && IsEvent(last) && deviations.back().call == 0)
    {
        return false;
    }
    if (flow.scene.helpers > 1 || !flow.second.empty())
    {
        return !IsConcurrent(first) && !IsConcurrent(last);
    }
    return deviations.size() == 1 || (deviations.size() == 2 && !IsConcurrent(first) && last.kind != Way::Kind::Ended &&
                                      (flow.scene.requests > 0 || !IsEvent(last)));
}

Judged Judge(Flow const& flow, std::vector<WayAt> const& deviations, Outcome const& seen)
{
    if (!flow.handlers.empty())
    {
        return JudgeHandlers(flow, deviations, seen);
    }
    return IsExact(flow, deviations) ? JudgeExactly(flow, deviations, seen)
                                     : HoldInvariants(seen, Possible(flow, deviations, seen));
}

} // namespace explore::faults
