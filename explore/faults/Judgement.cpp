#include "explore/faults/Judgement.h"

#include <cstdio>
#include <numeric>
#include <set>
#include <winrt/base.h>

namespace explore::faults
{

namespace
{

using Positions = std::vector<std::size_t>;

// From these positions in the sequences on. failed: from where it is known not to go on.
bool GoesOn(Texts const& lines, std::vector<Texts> const& sequences, Positions& at, std::set<Positions>& failed)
{
    auto const line = std::accumulate(at.begin(), at.end(), std::size_t{0});
    if (line == lines.size())
    {
        return true;
    }
    if (failed.contains(at))
    {
        return false;
    }
    for (std::size_t i = 0; i < sequences.size(); ++i)
    {
        if (at[i] < sequences[i].size() && sequences[i][at[i]] == lines[line])
        {
            ++at[i];
            if (GoesOn(lines, sequences, at, failed))
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

std::string Coded(End end, std::int32_t code)
{
    char text[60];
    std::snprintf(text, sizeof text, " %s 0x%08X", NameOf(end).c_str(), static_cast<unsigned>(code));
    return text;
}

} // namespace

bool IsInterleaving(Texts const& lines, std::vector<Texts> const& sequences)
{
    std::size_t total = 0;
    for (auto const& sequence : sequences)
    {
        total += sequence.size();
    }
    Positions at(sequences.size());
    std::set<Positions> failed;
    return total == lines.size() && GoesOn(lines, sequences, at, failed);
}

Judged HoldInvariants(Outcome const& seen, bool mayStayOpen)
{
    constexpr unsigned mostMessages = 2; // of a request
    if (!seen.isAnswered && !mayStayOpen && seen.end == End::Alive)
    {
        return {"a request stays open", "  after" + Shown(seen.lines)};
    }
    if (seen.messages.size() > mostMessages || seen.completions > mostMessages + 1)
    {
        return {"too many messages or completions",
                "  " + std::to_string(seen.completions) + " completions" + Shown(seen.messages)};
    }
    return {};
}

std::string Shown(Texts const& texts)
{
    std::string shown;
    for (auto const& text : texts)
    {
        shown += "\n    " + winrt::to_string(text);
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

Judged Compare(Outcome const& expected, std::vector<Texts> const& aside, Outcome const& seen)
{
    auto sequences = aside;
    sequences.push_back(expected.lines);
    if (!IsInterleaving(seen.lines, sequences))
    {
        auto text = Shown(expected.lines);
        for (auto const& lines : aside)
        {
            text += "\n   and among them" + Shown(lines);
        }
        return {"lines", Difference(text, Shown(seen.lines))};
    }
    if (expected.end != seen.end || (expected.end != End::Terminated && expected.code != seen.code))
    {
        return {"end", Difference(Coded(expected.end, expected.code), Coded(seen.end, seen.code))};
    }
    struct Field
    {
        char const* name;
        Texts expected;
        Texts seen;
    };
    auto const hasGone = seen.end == End::Terminated || seen.end == End::Killed;
    Field const fields[] = {
        {"messages", expected.messages, seen.messages},
        {"launches", expected.launches, seen.launches},
        {"waits", expected.waits, seen.waits},
        {"completions", {std::to_wstring(expected.completions)}, {std::to_wstring(seen.completions)}},
        {"tasks ended", {std::to_wstring(expected.tasksEnded)}, {std::to_wstring(seen.tasksEnded)}},
        {"tasks", expected.tasks, seen.tasks},
        {"stored URI", {expected.uri}, {seen.uri}},
        {"answer", {expected.isAnswered ? L"answered" : L"open"}, {seen.isAnswered ? L"answered" : L"open"}},
        {"response", {expected.response}, {seen.response}},
    };
    for (auto const& field : fields)
    {
        if (field.expected != field.seen && !hasGone)
        {
            return {field.name, Difference(Shown(field.expected), Shown(field.seen))};
        }
    }
    return {};
}

} // namespace explore::faults
