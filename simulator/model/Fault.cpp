#include "simulator/model/Fault.h"

#include "simulator/model/Error.h"
#include "simulator/model/KnownCalls.h"
#include "simulator/model/Text.h"

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

constexpr std::array kindNames = {
    KindName{FaultKind::Now, L"now", L"result"},
    KindName{FaultKind::Completion, L"completion", L"result"},
    KindName{FaultKind::Never, L"never", L""},
    KindName{FaultKind::Null, L"null", L""},
    KindName{FaultKind::Delay, L"delay", L"milliseconds"},
};

KindName const& NameOf(FaultKind kind)
{
    return kindNames[static_cast<std::size_t>(kind)];
}

std::wstring ValueText(Fault const& fault)
{
    return fault.kind == FaultKind::Delay ? std::to_wstring(fault.value) : Hex(fault.value);
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

KindName const& FindKind(std::wstring const& word, KnownCall const& call)
{
    for (auto const& kind : kindNames)
    {
        if (kind.name != word)
        {
            continue;
        }
        auto const name = std::wstring(call.name);
        if (kind.kind == FaultKind::Null && !call.canBeNull)
        {
            throw Error(name + L" hands out nothing that could be null; use now");
        }
        if (kind.kind != FaultKind::Now && kind.kind != FaultKind::Null && !call.isAsynchronous)
        {
            throw Error(name + L" is not asynchronous: it has no completion; use now");
        }
        return kind;
    }
    throw Error(L"there is no fault " + word + L"; use now, completion, never, null or delay");
}

std::uint32_t NumberFrom(std::wstring const& word, std::wstring_view what)
{
    auto const number = ParseNumber(word);
    if (!number)
    {
        throw Error(word + L" is no number (" + std::wstring(what) + L")");
    }
    return *number;
}

} // namespace

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
    return words;
}

Fault ParseFault(std::vector<std::wstring> const& words)
{
    if (words.size() < 2)
    {
        throw Error(
            L"name a call and how it fails: CALL now|completion|never|null|delay [RESULT|MILLISECONDS] [TIMES]");
    }
    Fault fault;
    auto const& kind = FindKind(words[1], FindCall(words[0]));
    fault.call = words[0];
    fault.kind = kind.kind;
    std::size_t next = 2;
    if (!kind.valueName.empty())
    {
        if (words.size() <= next)
        {
            throw Error(std::wstring(kind.name) + L" needs a number: " + std::wstring(kind.valueName));
        }
        fault.value = NumberFrom(words[next++], kind.valueName);
        if (kind.kind != FaultKind::Delay && fault.Result() >= 0)
        {
            throw Error(words[2] + L" is no failing result code (they begin with 0x8)");
        }
    }
    if (words.size() > next)
    {
        fault.times = NumberFrom(words[next++], L"how many times");
    }
    if (words.size() > next)
    {
        throw Error(L"what is meant by " + words[next] + L" after the fault?");
    }
    return fault;
}

} // namespace sim
