#include "simulator/protocol/Fault.h"

#include "simulator/base/Error.h"
#include "simulator/base/Text.h"
#include "simulator/protocol/KnownCalls.h"

#include <algorithm>
#include <array>

namespace sim
{

namespace
{

struct KindName
{
    FaultKind kind;
    std::wstring_view name;
    std::wstring_view valueName; // empty: the kind takes none
};

constexpr wchar_t allKinds[] = L"now, completion, never, null, delay, cancelled, status, unheard or ended";
constexpr wchar_t afterWord[] = L"after";

constexpr std::array kindNames = {
    KindName{FaultKind::Now, L"now", L"result"},
    KindName{FaultKind::Completion, L"completion", L"result"},
    KindName{FaultKind::Never, L"never", L""},
    KindName{FaultKind::Null, L"null", L""},
    KindName{FaultKind::Delay, L"delay", L"milliseconds"},
    KindName{FaultKind::Cancelled, L"cancelled", L""},
    KindName{FaultKind::Status, L"status", L"status"},
    KindName{FaultKind::Unheard, L"unheard", L"result"},
    KindName{FaultKind::Ended, L"ended", L""},
};

KindName const& NameOf(FaultKind kind)
{
    return kindNames[static_cast<std::size_t>(kind)];
}

std::wstring ValueText(Fault const& fault)
{
    auto const isCount = fault.kind == FaultKind::Delay || fault.kind == FaultKind::Status;
    return isCount ? std::to_wstring(fault.value) : Hex(fault.value);
}

KnownCall const& FindCall(std::wstring const& name)
{
    if (auto const* call = FindKnownCall(name))
    {
        return *call;
    }
    std::wstring known;
    for (auto const& call : KnownCalls())
    {
        known += L"\n  " + std::wstring(call.name);
    }
    throw Error(L"there is no call " + name + L". These can be made to fail:" + known);
}

KindName const& FindKind(std::wstring const& word)
{
    auto const* const found = std::ranges::find(kindNames, word, &KindName::name);
    return found != kindNames.end() ? *found : throw Error(L"there is no fault " + word + L"; use " + allKinds);
}

void CheckKind(FaultKind kind, KnownCall const& call)
{
    auto const name = std::wstring(call.name);
    auto const isAsynchronous = call.gives == Gives::Operation || call.gives == Gives::StatusOperation;
    if (kind == FaultKind::Null && call.gives == Gives::NoObject)
    {
        throw Error(name + L" hands out nothing that could be null; use now");
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

// Takes the words of a fault one by one.
class WordReader
{
  public:
    explicit WordReader(std::vector<std::wstring> const& words) : m_words(words) {}

    bool AtEnd() const { return m_next == m_words.size(); }

    std::wstring const& Peek() const { return m_words[m_next]; }

    std::wstring const& Take() { return m_words[m_next++]; }

    // what: the number's name.
    std::uint32_t TakeNumber(std::wstring_view owner, std::wstring_view what)
    {
        if (AtEnd())
        {
            throw Error(std::wstring(owner) + L" needs a number: " + std::wstring(what));
        }
        auto const& word = Take();
        auto const number = ParseNumber(word);
        return number ? *number : throw Error(word + L" is no number (" + std::wstring(what) + L")");
    }

  private:
    std::vector<std::wstring> const& m_words;
    std::size_t m_next = 0;
};

void CheckValue(Fault const& fault, std::wstring const& word)
{
    auto const isCount = fault.kind == FaultKind::Delay || fault.kind == FaultKind::Status;
    if (!isCount && fault.Result() >= 0)
    {
        throw Error(word + L" is no failing result code (they begin with 0x8)");
    }
    if (fault.kind == FaultKind::Status && fault.value == 0)
    {
        throw Error(L"the status 0 is success");
    }
}

} // namespace

std::vector<std::wstring_view> FaultKindNames()
{
    std::vector<std::wstring_view> names(kindNames.size());
    std::ranges::transform(kindNames, names.begin(), &KindName::name);
    return names;
}

std::vector<std::wstring> Fault::Details() const
{
    auto const& name = NameOf(kind);
    std::vector<std::wstring> details = {L"call=" + call, L"kind=" + std::wstring(name.name)};
    if (!name.valueName.empty())
    {
        details.push_back(std::wstring(name.valueName) + L"=" + ValueText(*this));
    }
    if (times != always)
    {
        details.push_back(L"times=" + std::to_wstring(times));
    }
    if (after != 0)
    {
        details.push_back(L"after=" + std::to_wstring(after));
    }
    return details;
}

std::vector<std::wstring> Fault::Words() const
{
    auto const& name = NameOf(kind);
    std::vector<std::wstring> words = {call, std::wstring(name.name)};
    if (!name.valueName.empty())
    {
        words.push_back(ValueText(*this));
    }
    if (times != always)
    {
        words.push_back(std::to_wstring(times));
    }
    if (after != 0)
    {
        words.insert(words.end(), {afterWord, std::to_wstring(after)});
    }
    return words;
}

Fault ParseFault(std::vector<std::wstring> const& words)
{
    if (words.size() < 2)
    {
        throw Error(L"name a call and how it fails: CALL " + std::wstring(allKinds) +
                    L" [RESULT|MILLISECONDS|STATUS] [TIMES] [after CALLS]");
    }
    WordReader rest(words);
    Fault fault;
    fault.call = rest.Take();
    auto const& call = FindCall(fault.call);
    auto const& kind = FindKind(rest.Take());
    CheckKind(kind.kind, call);
    fault.kind = kind.kind;
    if (!kind.valueName.empty())
    {
        fault.value = rest.TakeNumber(kind.name, kind.valueName);
        CheckValue(fault, words[2]);
    }
    if (!rest.AtEnd() && rest.Peek() != afterWord)
    {
        fault.times = rest.TakeNumber(kind.name, L"how many times");
    }
    if (!rest.AtEnd() && rest.Peek() == afterWord)
    {
        rest.Take();
        fault.after = rest.TakeNumber(afterWord, L"how many calls before it");
    }
    if (!rest.AtEnd())
    {
        throw Error(L"what is meant by " + rest.Take() + L" after the fault?");
    }
    return fault;
}

} // namespace sim
