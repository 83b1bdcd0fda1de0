#pragma once
#include "explore/faults/model/Outcome.h"
#include "explore/faults/model/Step.h"
#include "explore/faults/model/Way.h"

#include <optional>
#include <set>

namespace explore::faults
{

// Handlers of the end of a connection that run at the same time, in each order in which their steps can come.
class SideBySide
{
  public:
    // What was seen of them.
    struct Seen
    {
        Texts lines = {};
        Texts calls = {};
        unsigned tasksEnded = 0;
        bool isKilled = false; // the process, at the last of the calls
    };

    // closed: the handler that runs, too, when the helper goes away meanwhile, unless the connection is closed before
    // it begins; empty for none.
    SideBySide(std::vector<Steps> const& handlers, Steps const& closed, std::vector<WayAt> deviations);

    // Whether some order of their steps leads to exactly that.
    bool CanLeadTo(Seen const& seen) const;

  private:
    enum class Action
    {
        Say,
        Call,
        IfDeferral, // otherwise it goes on at the target
        IfConnected,
        ReleaseDeferral,
        ReleaseConnection,
        Guard,    // from here on a failure leads to the target
        EndGuard, // goes on at the target
    };

    struct Instruction
    {
        Action action;
        std::wstring text = {};
        std::size_t target = 0;
    };

    using Program = std::vector<Instruction>;

    // Between two instructions.
    struct Thread
    {
        std::size_t program;
        std::size_t at = 0;
        std::optional<std::size_t> guard = {};

        auto operator<=>(Thread const&) const = default;
    };

    struct State
    {
        std::vector<Thread> threads;
        bool hasDeferral = true;
        bool isConnected = true;
        bool hasTaskEnded = false;
        bool isKilled = false;
        std::size_t lines = 0; // so many of those that were seen
        std::size_t calls = 0;

        auto operator<=>(State const&) const = default;
    };

    static void Append(Program& program, Steps const& steps);
    bool IsOver(Thread const& thread) const { return thread.at >= m_programs[thread.program].size(); }
    bool AreAllOver(State const& state) const;
    bool GoesOn(State const& state, Seen const& seen, std::set<State>& tried) const;
    std::optional<State> After(State state, std::size_t number, Seen const& seen) const;
    bool Make(State& state, std::size_t number, std::wstring const& call, Seen const& seen) const;
    void Fail(Thread& thread) const;
    void End(Thread& thread) const { thread.at = m_programs[thread.program].size(); }
    Way WayOf(std::size_t call) const;

    std::vector<Program> m_programs;
    std::size_t m_handlers;
    std::optional<std::size_t> m_closed; // its program
    std::vector<WayAt> m_deviations;
};

} // namespace explore::faults
