#include "explore/faults/model/SideBySide.h"

#include "explore/faults/model/Line.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace explore::faults
{

SideBySide::SideBySide(std::vector<Steps> const& handlers, Steps const& closed, std::vector<WayAt> deviations)
    : m_handlers(handlers.size()), m_deviations(std::move(deviations))
{
    for (auto const& steps : handlers)
    {
        Append(m_programs.emplace_back(), steps);
    }
    if (!closed.empty())
    {
        m_closed = m_programs.size();
        Append(m_programs.emplace_back(), closed);
    }
}

void SideBySide::Append(Program& program, Steps const& steps)
{
    using enum Step::Kind;
    for (auto const& step : steps)
    {
        auto const first = program.size();
        switch (step.kind)
        {
        case Info:
        case Error:
            program.push_back({Action::Say, LineOf(step)});
            break;
        case Call:
            program.push_back({Action::Call, std::wstring(step.text)});
            break;
        case IfDeferral:
        case IfConnected: {
            auto const isDeferral = step.kind == IfDeferral;
            program.push_back({isDeferral ? Action::IfDeferral : Action::IfConnected});
            Append(program, step.body);
            program.push_back({isDeferral ? Action::ReleaseDeferral : Action::ReleaseConnection});
            program[first].target = program.size();
            break;
        }
        case Guard: {
            program.push_back({Action::Guard});
            Append(program, step.body);
            auto const last = program.size();
            program.push_back({Action::EndGuard});
            program[first].target = program.size();
            Append(program, step.otherwise);
            program[last].target = program.size();
            break;
        }
        default:
            throw std::logic_error("the handlers of a connection have no such step");
        }
    }
}

bool SideBySide::CanLeadTo(Seen const& seen) const
{
    State state;
    for (std::size_t handler = 0; handler < m_handlers; ++handler)
    {
        state.threads.push_back({handler});
    }
    std::set<State> tried;
    return GoesOn(state, seen, tried);
}

bool SideBySide::GoesOn(State const& state, Seen const& seen, std::set<State>& tried) const
{
    if (!tried.insert(state).second)
    {
        return false;
    }
    auto const areAllSeen = state.lines == seen.lines.size() && state.calls == seen.calls.size();
    if (state.isKilled && areAllSeen)
    {
        return seen.isKilled;
    }
    if (AreAllOver(state) && areAllSeen && !seen.isKilled && seen.tasksEnded == (state.hasTaskEnded ? 1 : 0))
    {
        return true;
    }
    for (std::size_t thread = 0; thread < state.threads.size(); ++thread)
    {
        auto const next = IsOver(state.threads[thread]) ? std::nullopt : After(state, thread, seen);
        if (next && GoesOn(*next, seen, tried))
        {
            return true;
        }
    }
    return false;
}

bool SideBySide::AreAllOver(State const& state) const
{
    return std::ranges::all_of(state.threads, [&](Thread const& thread) {
        return IsOver(thread) || (thread.program == m_closed && thread.at == 0 && !state.isConnected);
    });
}

// Nothing where what was seen is something else.
std::optional<SideBySide::State> SideBySide::After(State state, std::size_t number, Seen const& seen) const
{
    auto& thread = state.threads[number];
    auto const& [action, text, target] = m_programs[thread.program][thread.at];
    if (action == Action::Call)
    {
        return Make(state, number, text, seen) ? std::optional(std::move(state)) : std::nullopt;
    }
    ++thread.at;
    switch (action)
    {
    case Action::Say:
        if (state.lines == seen.lines.size() || seen.lines[state.lines] != text)
        {
            return std::nullopt;
        }
        ++state.lines;
        break;
    case Action::IfDeferral:
        thread.at = state.hasDeferral ? thread.at : target;
        break;
    case Action::IfConnected:
        thread.at = state.isConnected ? thread.at : target;
        break;
    case Action::ReleaseDeferral:
        state.hasDeferral = false;
        break;
    case Action::ReleaseConnection:
        state.isConnected = false;
        break;
    case Action::Guard:
        thread.guard = target;
        break;
    default:
        thread.guard.reset();
        thread.at = target;
    }
    return state;
}

bool SideBySide::Make(State& state, std::size_t number, std::wstring const& call, Seen const& seen) const
{
    if (state.calls == seen.calls.size() || seen.calls[state.calls] != call)
    {
        return false;
    }
    auto const way = WayOf(state.calls++);
    if (way.kind == Way::Kind::Killed)
    {
        state.isKilled = true;
        End(state.threads[number]);
        return true;
    }
    if (way.kind == Way::Kind::Now)
    {
        Fail(state.threads[number]);
        return true;
    }
    if (m_closed && !state.hasTaskEnded && (way.kind == Way::Kind::HelperCloses || way.kind == Way::Kind::HelperDies))
    {
        state.threads.push_back({*m_closed});
    }
    state.hasTaskEnded |= call == L"BackgroundTaskDeferral.Complete";
    ++state.threads[number].at;
    return true;
}

void SideBySide::Fail(Thread& thread) const
{
    auto const guard = std::exchange(thread.guard, std::nullopt);
    guard ? static_cast<void>(thread.at = *guard) : End(thread);
}

Way SideBySide::WayOf(std::size_t call) const
{
    auto const deviation = std::ranges::find(m_deviations, call, &WayAt::call);
    return deviation == m_deviations.end() ? Way() : deviation->way;
}

} // namespace explore::faults
