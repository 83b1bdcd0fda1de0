#include "simulator/protocol/Fault.h"

#include "simulator/base/Error.h"
#include "simulator/base/Text.h"
#include "simulator/protocol/Event.h"
#include "simulator/protocol/KnownCalls.h"

#include <algorithm>
#include <array>
#include <span>
#include <utility>

namespace sim
{

namespace
{

constexpr std::wstring_view afterName = L"after";
constexpr std::wstring_view resultName = L"result";

struct Kind
{
    std::wstring_view name;
    std::wstring_view valueName; // empty for a kind without a value

    bool TakesResult() const { return valueName == resultName; }
};

// By FaultKind.
constexpr std::array<Kind, static_cast<std::size_t>(FaultKind::Last) + 1> kinds = {{
    {L"now", resultName},
    {L"completion", resultName},
    {L"never", L""},
    {L"null", L""},
    {L"delay", L"milliseconds"},
    {L"cancelled", L""},
    {L"status", L"status"},
    {L"unheard", resultName},
    {L"ended", L""},
    {L"held", L""},
}};

Kind const& Row(FaultKind kind)
{
    return kinds[static_cast<std::size_t>(kind)];
}

std::wstring AllKinds()
{
    auto names = FaultKindNames();
    auto const last = std::wstring(names.back());
    names.pop_back();
    return Listed(names, L", ") + L" or " + last;
}

// The numbers of a fault by their names, without those that have their default.
std::vector<std::pair<std::wstring_view, std::wstring>> Numbers(Fault const& fault)
{
    std::vector<std::pair<std::wstring_view, std::wstring>> numbers;
    auto const& kind = Row(fault.kind);
    if (!kind.valueName.empty())
    {
        numbers.emplace_back(kind.valueName, kind.TakesResult() ? Hex(fault.value) : std::to_wstring(fault.value));
    }
    if (fault.times != Fault::always)
    {
        numbers.emplace_back(L"times", std::to_wstring(fault.times));
    }
    if (fault.after != 0)
    {
        numbers.emplace_back(afterName, std::to_wstring(fault.after));
    }
    return numbers;
}

KnownCall const& FindCall(std::wstring const& name)
{
    auto const* const found = std::ranges::find(knownCalls, name, &KnownCall::name);
    if (found == std::end(knownCalls))
    {
        std::vector<std::wstring_view> known(std::size(knownCalls));
        std::ranges::transform(knownCalls, known.begin(), &KnownCall::name);
        throw Error(L"there is no call " + name + L". These can be made to fail:\n  " + Listed(known, L"\n  "));
    }
    return *found;
}

FaultKind FindKind(std::wstring const& word)
{
    auto const* const found = std::ranges::find(kinds, word, &Kind::name);
    return found != kinds.end() ? static_cast<FaultKind>(found - kinds.begin())
                                : throw Error(L"there is no fault " + word + L"; use " + AllKinds());
}

void CheckKind(FaultKind kind, KnownCall const& call)
{
    auto const name = std::wstring(call.name);
    auto const isAsynchronous = call.gives == Gives::Operation || call.gives == Gives::StatusOperation;
    if (kind == FaultKind::Null && call.gives == Gives::NoObject)
    {
        throw Error(name + L" returns nothing that could be null; use now");
    }
    if (kind != FaultKind::Now && kind != FaultKind::Null && !isAsynchronous)
    {
        throw Error(name + L" is not asynchronous: it has no completion; use now");
    }
    if (kind == FaultKind::Status && call.gives != Gives::StatusOperation)
    {
        throw Error(name + L" completes with no status; use completion");
    }
}

void CheckValue(Fault const& fault, std::wstring const& word)
{
    if (Row(fault.kind).TakesResult() && fault.Result() >= 0)
    {
        throw Error(word + L" is no failing HRESULT (they begin with 0x8)");
    }
    if (fault.kind == FaultKind::Status && fault.value == 0)
    {
        throw Error(L"the status 0 is success");
    }
}

void CheckTimes(Fault const& fault)
{
    if (fault.kind == FaultKind::Held)
    {
        throw Error(L"held ends when the faults are cleared, not after a number of times");
    }
}

using WordsLeft = std::span<std::wstring const>;

std::wstring const& Take(WordsLeft& words)
{
    auto const& word = words.front();
    words = words.subspan(1);
    return word;
}

// what: the number's name.
std::uint32_t TakeNumber(WordsLeft& words, std::wstring_view owner, std::wstring_view what)
{
    if (words.empty())
    {
        throw Error(std::wstring(owner) + L" needs a number: " + std::wstring(what));
    }
    auto const& word = Take(words);
    auto const number = ParseNumber(word);
    return number ? *number : throw Error(word + L" is no number (" + std::wstring(what) + L")");
}

} // namespace

std::vector<std::wstring_view> FaultKindNames()
{
    std::vector<std::wstring_view> names(kinds.size());
    std::ranges::transform(kinds, names.begin(), &Kind::name);
    return names;
}

std::vector<std::wstring> Fault::Details() const
{
    std::vector<std::wstring> details = {Detail(L"call", call), Detail(L"kind", Row(kind).name)};
    for (auto const& [name, number] : Numbers(*this))
    {
        details.push_back(Detail(name, number));
    }
    return details;
}

std::vector<std::wstring> Fault::Words() const
{
    std::vector<std::wstring> words = {call, std::wstring(Row(kind).name)};
    for (auto const& [name, number] : Numbers(*this))
    {
        if (name == afterName)
        {
            words.emplace_back(name);
        }
        words.push_back(number);
    }
    return words;
}

Fault ParseFault(std::vector<std::wstring> const& words)
{
    if (words.size() < 2)
    {
        throw Error(L"name a call and how it fails: CALL " + AllKinds() +
                    L" [RESULT|MILLISECONDS|STATUS] [TIMES] [after CALLS]");
    }
    WordsLeft rest(words);
    Fault fault;
    fault.call = Take(rest);
    auto const& call = FindCall(fault.call);
    fault.kind = FindKind(Take(rest));
    CheckKind(fault.kind, call);
    auto const& [name, valueName] = Row(fault.kind);
    if (!valueName.empty())
    {
        fault.value = TakeNumber(rest, name, valueName);
        CheckValue(fault, words[2]);
    }
    if (!rest.empty() && rest.front() != afterName)
    {
        fault.times = TakeNumber(rest, name, L"how many times");
        CheckTimes(fault);
    }
    if (!rest.empty() && rest.front() == afterName)
    {
        Take(rest);
        fault.after = TakeNumber(rest, afterName, L"how many calls before it");
    }
    if (!rest.empty())
    {
        throw Error(L"unexpected " + rest.front() + L" after the fault");
    }
    return fault;
}

} // namespace sim
