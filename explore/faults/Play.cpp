#include "explore/faults/Play.h"

#include "explore/faults/Flow.h"
#include "explore/faults/Judgement.h"
#include "explore/faults/Plays.h"
#include "explore/faults/Stage.h"
#include "explore/harness/Chosen.h"
#include "explore/harness/Hash.h"
#include "explore/harness/Refusal.h"
#include "simulator/protocol/KnownCalls.h"

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <numeric>
#include <stdexcept>
#include <utility>
#include <winrt/Windows.Foundation.Collections.h>
#include <winrt/Windows.Storage.h>

namespace explore::faults
{

namespace
{

constexpr std::wstring_view loggedUri = L"https://channel.example/new%%2F%%41";
constexpr std::wstring_view channelUri = L"https://channel.example/new%2F%41";

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

// Of the exception that ends the process.
std::int32_t TerminationCode()
try
{
    std::rethrow_exception(std::current_exception());
}
catch (winrt::hresult_error const& error)
{
    return error.code();
}
catch (std::bad_alloc const&)
{
    return E_OUTOFMEMORY;
}
catch (...)
{
    return 0;
}

// What happens outside the app; null for what is a fault of the call.
void (*EventOf(Way const& way))(Stage&)
{
    switch (way.kind)
    {
    case Way::Kind::HelperCloses:
        return [](Stage& stage) { stage.FirstHelper().Close(); };
    case Way::Kind::HelperDies:
        return [](Stage& stage) { stage.device.KillCaller(); };
    case Way::Kind::TaskCancelled:
        return [](Stage& stage) { stage.device.CancelTasks(0); };
    default:
        return nullptr;
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
    Play(Flow const& flow, std::vector<WayAt> deviations, std::function<void(Verdict const&)> const& judged)
        : m_flow(flow), m_judged(judged), m_deviations(std::move(deviations))
    {
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
        if (way.kind == Way::Kind::Killed)
        {
            EndWithProcess(End::Killed);
        }
        auto* const event = EventOf(way);
        if (event == nullptr && way.kind != Way::Kind::Ordinary)
        {
            return FaultOf(way, call);
        }
        if (event != nullptr)
        {
            m_stage.DoBeforeNext(event);
        }
        NoteExit(call);
        return std::nullopt;
    }

    void NoteExit(std::wstring_view call)
    {
        if (call == L"CoreApplication.Exit")
        {
            std::lock_guard const lock(m_mutex);
            m_linesAtExit = m_stage.Lines().size() - m_linesBefore;
        }
    }

    Way Next(std::wstring_view call)
    {
        std::lock_guard const lock(m_mutex);
        auto const number = m_calls.size();
        m_calls.emplace_back(call);
        auto const deviation = std::ranges::find(m_deviations, number, &WayAt::call);
        auto const way = deviation != m_deviations.end() && Applies(deviation->way, call) ? deviation->way : Way();
        if (way.kind == Way::Kind::Ended)
        {
            m_starter = std::to_wstring(GetCurrentThreadId());
        }
        m_hash.Add(call);
        m_hash.Add(explore::faults::NameOf(way));
        m_states.push_back(m_hash.Value());
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
                seen.code = end == End::Terminated ? TerminationCode() : 0;
            }
            std::lock_guard const lock(m_mutex);
            seen.calls = m_calls;
            seen.linesAtExit = m_linesAtExit;
        }
        catch (std::exception const& error)
        {
            verdict.kind = "a torn line";
            verdict.what = error.what();
        }
        if (verdict.kind.empty())
        {
            auto judged = Judge(m_flow, m_deviations, seen);
            judged = judged.kind.empty() ? JudgeThreads(seen) : judged;
            verdict.kind = judged.kind;
            verdict.what = judged.what;
        }
        verdict.outcome = OutcomeText(seen);
        verdict.shown = ShownCalls() + "\n  lines:" + Shown(seen.lines) + "\n  messages:" + Shown(seen.messages);
        verdict.states = m_states;
        verdict.endsProcess = end != End::Alive;
        m_judged(verdict);
    }

    // What comes of an operation that has ended at once never runs on the thread that started it. Held for the UI
    // thread only: one of the pool may have come back by then.
    Judged JudgeThreads(Outcome const& seen) const
    {
        if (m_starter.empty() || m_flow.role != Role::Override || !IsExact(m_flow, m_deviations))
        {
            return {};
        }
        Reckoning reckoning(m_flow.scene, m_deviations);
        reckoning.Run(m_flow.rules, m_flow.role, m_flow.second);
        if (reckoning.Asides().empty())
        {
            return {};
        }
        auto const threads = m_stage.LineThreads();
        auto const& aside = reckoning.Asides().front().lines;
        for (std::size_t line = 0; line < seen.lines.size(); ++line)
        {
            if (std::ranges::find(aside, seen.lines[line]) != aside.end() && threads[m_linesBefore + line] == m_starter)
            {
                return {"thread", "  on the thread that started the operation:" + Shown({seen.lines[line]})};
            }
        }
        return {};
    }

    static std::string OutcomeText(Outcome const& seen)
    {
        auto const isAnyOpen = !std::ranges::all_of(seen.answers, &Answer::isGiven);
        return explore::faults::NameOf(seen.end) + ", " + std::to_string(seen.lines.size()) + " lines, " +
               std::to_string(seen.messages.size()) + " messages, " +
               std::to_string(std::accumulate(seen.completions.begin(), seen.completions.end(), 0U)) +
               " completions, " + (isAnyOpen ? "request open, " : "") + std::to_string(seen.tasks.size()) + " tasks";
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
    std::vector<WayAt> m_deviations;
    std::mutex m_mutex; // over the next five
    Texts m_calls;
    std::vector<std::uint64_t> m_states;
    Hash m_hash;
    std::optional<std::size_t> m_linesAtExit;
    std::wstring m_starter; // the thread whose operation ends at once
    std::size_t m_linesBefore = 0;
    Stage m_stage;
};

} // namespace

void PlayOnce(PlayId const& id, std::function<void(Verdict const&)> const& judged)
{
    auto const* const flow = FlowOf(id.story);
    if (flow == nullptr)
    {
        throw std::runtime_error(NoStory("flow", id.story, NamesOf(Flows())));
    }
    auto const deviations = WaysIn(id);
    if (auto const why = WhyNot(*flow, id); !why.empty() || !deviations)
    {
        throw std::runtime_error(why);
    }
    Play(*flow, *deviations, judged).Run();
}

} // namespace explore::faults
