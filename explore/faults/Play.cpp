#include "explore/faults/Play.h"

#include "explore/faults/Flow.h"
#include "explore/faults/Judgement.h"
#include "simulator/protocol/KnownCalls.h"

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <set>
#include <winrt/Windows.Foundation.Collections.h>
#include <winrt/Windows.Storage.h>

namespace explore::faults
{

namespace
{

constexpr std::wstring_view loggedUri = L"https://channel.example/new%%2F%%41";
constexpr std::wstring_view channelUri = L"https://channel.example/new%2F%41";

std::uint64_t HashOf(std::wstring_view text, std::uint64_t hash)
{
    constexpr std::uint64_t prime = 0x100000001B3; // FNV-1a
    for (auto const character : text)
    {
        hash = (hash ^ static_cast<std::uint64_t>(character)) * prime;
    }
    return hash;
}

std::wstring Named(std::wstring text)
{
    for (auto const& [uri, name] : {std::pair{loggedUri, std::wstring_view(L"{logged-uri}")}, {channelUri, L"{uri}"}})
    {
        if (auto const place = text.find(uri); place != std::wstring::npos)
        {
            text.replace(place, uri.size(), name);
        }
    }
    return text;
}

std::wstring StoredUri()
{
    using namespace winrt::Windows::Storage;
    auto const value = ApplicationData::Current().LocalSettings().Values().Lookup(L"CURI");
    return std::wstring(winrt::unbox_value_or<winrt::hstring>(value, L""));
}

sim::Fault FaultOf(Way const& way, std::wstring_view call)
{
    auto const code = static_cast<std::uint32_t>(way.code);
    auto const fault = [&](sim::FaultKind kind) {
        return sim::Fault{.call = std::wstring(call), .kind = kind, .value = code};
    };
    switch (way.kind)
    {
    case Way::Kind::Null:
        return fault(sim::FaultKind::Null);
    case Way::Kind::Completion:
        return fault(sim::FaultKind::Completion);
    case Way::Kind::Cancelled:
        return fault(sim::FaultKind::Cancelled);
    case Way::Kind::Never:
        return fault(sim::FaultKind::Never);
    case Way::Kind::Ended:
        return fault(sim::FaultKind::Ended);
    case Way::Kind::Unheard:
        return fault(sim::FaultKind::Unheard);
    case Way::Kind::Status:
        return fault(sim::FaultKind::Status);
    default:
        return fault(sim::FaultKind::Now);
    }
}

bool IsKnown(std::wstring_view call)
{
    return std::ranges::find(sim::knownCalls, call, &sim::KnownCall::name) != std::end(sim::knownCalls);
}

// One play, from its preparation to its verdict.
class Play
{
  public:
    Play(PlayId const& id, std::function<void(Verdict const&)> const& judged)
        : m_flow(*FlowOf(id.story)), m_judged(judged)
    {
        for (auto const& deviation : id.deviations)
        {
            auto const way = WayOf(deviation.what);
            m_deviations.push_back({deviation.step, way ? *way : throw std::runtime_error("no way " + deviation.what)});
        }
    }

    void Run()
    {
        s_current = this;
        auto const before = std::set_terminate([] { s_current->EndWithProcess(); });
        m_flow.prepare(m_stage);
        m_linesBefore = m_stage.Lines().size();
        for (auto const& deviation : m_deviations)
        {
            if (deviation.way.kind == Way::Kind::Ended)
            {
                m_stage.EndOperationsAtOnce();
            }
        }
        winrt::clear_factory_cache(); // each flow takes the factories that it needs
        m_stage.device.WatchCalls([this](std::wstring_view call) { return Called(call); });
        if (BeginAndSettle())
        {
            Conclude();
        }
        std::set_terminate(before);
    }

  private:
    bool BeginAndSettle()
    try
    {
        m_flow.begin(m_stage);
        m_stage.Settle();
        return true;
    }
    catch (Stuck const& stuck)
    {
        EndStuck(stuck);
    }

    [[noreturn]] void EndStuck(Stuck const& stuck)
    {
        m_judged({.kind = "a thread waits",
                  .what = std::string("  ") + stuck.what() + Shown(m_stage.Lines()),
                  .outcome = "stuck",
                  .shown = ShownCalls(),
                  .endsProcess = true});
        TerminateProcess(GetCurrentProcess(), 1);
        std::abort();
    }

    // On threads of the app.
    std::optional<sim::Fault> Called(std::wstring_view call)
    try
    {
        return IsKnown(call) ? Go(call) : std::nullopt;
    }
    catch (Stuck const& stuck)
    {
        EndStuck(stuck);
    }

    std::optional<sim::Fault> Go(std::wstring_view call)
    {
        m_stage.AwaitOthersIfAsked();
        auto const way = Next(call);
        switch (way.kind)
        {
        case Way::Kind::Ordinary:
            return std::nullopt;
        case Way::Kind::HelperCloses:
            m_stage.DoBeforeNext([](Stage& stage) { stage.FirstHelper().Close(); });
            return std::nullopt;
        case Way::Kind::HelperDies:
            m_stage.DoBeforeNext([](Stage& stage) { stage.device.KillCaller(); });
            return std::nullopt;
        case Way::Kind::TaskCancelled:
            m_stage.DoBeforeNext([](Stage& stage) { stage.device.CancelTasks(0); });
            return std::nullopt;
        case Way::Kind::Killed:
            EndWithProcess(End::Killed);
        default:
            return FaultOf(way, call);
        }
    }

    Way Next(std::wstring_view call)
    {
        std::lock_guard const lock(m_mutex);
        auto const number = m_calls.size();
        m_calls.emplace_back(call);
        auto const deviation = std::ranges::find(m_deviations, number, &Reckoning::Deviation::call);
        auto const way = deviation != m_deviations.end() && Applies(deviation->way, call) ? deviation->way : Way();
        if (way.kind == Way::Kind::Ended)
        {
            m_starter = std::to_wstring(GetCurrentThreadId());
        }
        m_hash = HashOf(winrt::to_hstring(explore::faults::NameOf(way)), HashOf(call, m_hash));
        m_states.push_back(m_hash);
        return way;
    }

    [[noreturn]] void EndWithProcess(End end = End::Terminated)
    {
        Conclude(end);
        TerminateProcess(GetCurrentProcess(), 3);
        std::abort();
    }

    void Conclude(End end = End::Alive)
    {
        Outcome seen;
        Verdict verdict;
        try
        {
            seen = m_stage.Look();
            auto const lines = m_stage.Lines();
            seen.lines.assign(lines.begin() + static_cast<std::ptrdiff_t>(m_linesBefore), lines.end());
            std::ranges::transform(seen.lines, seen.lines.begin(), Named);
            std::ranges::transform(seen.messages, seen.messages.begin(), Named);
            if (end == End::Alive)
            {
                m_stage.device.WatchCalls({});
                seen.uri = Named(StoredUri());
            }
            else
            {
                seen.end = end;
            }
        }
        catch (std::exception const& error)
        {
            verdict.kind = "a torn line";
            verdict.what = error.what();
        }
        if (verdict.kind.empty())
        {
            auto const judged = Judge(seen);
            verdict.kind = judged.kind;
            verdict.what = judged.what;
        }
        verdict.outcome = OutcomeText(seen);
        verdict.shown = ShownCalls() + "\n  lines:" + Shown(seen.lines) + "\n  messages:" + Shown(seen.messages);
        verdict.states = m_states;
        verdict.endsProcess = end != End::Alive;
        m_judged(verdict);
    }

    // What follows is in one order: a second deviation meets the call that it meets by the rules.
    bool IsExact() const
    {
        if (m_deviations.empty())
        {
            return true;
        }
        auto const first = m_deviations.front().way;
        return m_flow.beside.empty() && (m_flow.scene.helpers == 1 || !IsConcurrent(first)) &&
               (m_deviations.size() == 1 || (!IsConcurrent(first) && m_deviations.back().way.kind != Way::Kind::Ended));
    }

    Judged Judge(Outcome const& seen) const
    {
        if (!IsExact())
        {
            return HoldInvariants(seen, MayStayOpen());
        }
        auto const reckoning = Reckoned(m_deviations);
        auto expected = reckoning.Result();
        if (reckoning.IsConnectionLost())
        {
            TakeUnheard(expected, seen);
        }
        auto judged = Compare(expected, reckoning.Aside(), seen);
        if (judged.kind.empty() && reckoning.Aside().empty() && reckoning.Calls() != m_calls)
        {
            judged = {"calls", "  by the rules:" + Shown(reckoning.Calls()) + "\n  seen:" + Shown(m_calls)};
        }
        return judged.kind.empty() ? JudgeThreads(reckoning.Aside(), seen) : judged;
    }

    // What comes of an operation that has ended at once never runs on the thread that started it. Held for the UI
    // thread only: one of the pool may have come back by then.
    Judged JudgeThreads(std::vector<Texts> const& aside, Outcome const& seen) const
    {
        if (m_starter.empty() || m_flow.role != Role::Override || aside.empty())
        {
            return {};
        }
        auto const threads = m_stage.LineThreads();
        for (std::size_t line = 0; line < seen.lines.size(); ++line)
        {
            if (std::ranges::find(aside.front(), seen.lines[line]) != aside.front().end() &&
                threads[m_linesBefore + line] == m_starter)
            {
                return {"thread", "  on the thread that started the operation:" + Shown({seen.lines[line]})};
            }
        }
        return {};
    }

    // A helper that has closed or died may miss what was on its way.
    static void TakeUnheard(Outcome& expected, Outcome const& seen)
    {
        expected.messages.resize(std::min(expected.messages.size(), seen.messages.size()));
        if (seen.response.empty())
        {
            expected.response.clear();
        }
    }

    Reckoning Reckoned(std::vector<Reckoning::Deviation> const& deviations) const
    {
        Reckoning reckoning(m_flow.scene, deviations);
        reckoning.Run(m_flow.rules, m_flow.role, m_flow.beside);
        return reckoning;
    }

    bool StaysOpen(std::vector<Reckoning::Deviation> const& deviations) const
    {
        return !Reckoned(deviations).Result().isAnswered;
    }

    // With the last deviation at any call like the one that it has met.
    bool MayStayOpen() const
    {
        auto const& last = m_deviations.back();
        auto others = m_deviations;
        others.pop_back();
        auto const calls = Reckoned(others).Calls();
        auto const met = last.call < m_calls.size() ? m_calls[last.call] : std::wstring();
        auto mayStayOpen = StaysOpen(others) || StaysOpen({last});
        for (std::size_t number = 0; number < calls.size() && !mayStayOpen; ++number)
        {
            others.push_back({number, last.way});
            mayStayOpen = calls[number] == met && StaysOpen(others);
            others.pop_back();
        }
        return mayStayOpen;
    }

    std::string OutcomeText(Outcome const& seen) const
    {
        return explore::faults::NameOf(seen.end) + ", " + std::to_string(seen.lines.size()) + " lines, " +
               std::to_string(seen.messages.size()) + " messages, " + std::to_string(seen.completions) +
               " completions, " + (seen.isAnswered ? "" : "request open, ") + std::to_string(seen.tasks.size()) +
               " tasks";
    }

    std::string ShownCalls() const
    {
        std::string shown = "  calls:";
        for (std::size_t number = 0; number < m_calls.size(); ++number)
        {
            shown += "\n    " + std::to_string(number) + " " + winrt::to_string(m_calls[number]);
        }
        return shown;
    }

    static inline Play* s_current = nullptr;

    Flow const& m_flow;
    std::function<void(Verdict const&)> const& m_judged;
    std::vector<Reckoning::Deviation> m_deviations;
    std::mutex m_mutex; // over the next four
    Texts m_calls;
    std::vector<std::uint64_t> m_states;
    std::uint64_t m_hash = 0;
    std::wstring m_starter; // the thread whose operation ends at once
    std::size_t m_linesBefore = 0;
    Stage m_stage;
};

} // namespace

void PlayOnce(PlayId const& id, std::function<void(Verdict const&)> const& judged)
{
    if (!FlowOf(id.story))
    {
        throw std::runtime_error("there is no story " + id.story);
    }
    Play(id, judged).Run();
}

} // namespace explore::faults
