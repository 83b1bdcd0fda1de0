#pragma once
#include "simulator/platform/Clock.h"
#include "simulator/platform/Journal.h"
#include "simulator/platform/PushChannel.h"
#include "simulator/platform/TaskInstances.h"
#include "simulator/platform/TaskRegistry.h"
#include "simulator/protocol/Requests.h"

#include <deque>
#include <set>
#include <string>

namespace sim
{

// The app's background tasks: their registrations, and the pushes and timers that trigger them. Timers use the device's
// clock. One task runs at a time, others wait.
class BackgroundTasks
{
  public:
    BackgroundTasks(Journal& journal, Clock const& clock, TaskInstances& instances);

    // Throws Error when it cannot be saved.
    TaskRegistered Register(RegisterTask const& request);

    std::vector<RegisteredTask> const& All() const noexcept { return m_registry.All(); }

    // Running instances finish unless the request cancels them.
    void Unregister(UnregisterTask const& request);

    // Replaces the registrations by those in the file. Nothing runs.
    void Load(std::wstring file);

    // channel: the app's, for a push without a URI. Returns the outcome as display text; throws Error for a payload
    // above the limit.
    std::wstring Push(PushChannel const& channel, sim::Push const& push);

    // Starts the timers that are due, each once, even if several periods have passed.
    void RunDue();

    // Sets or clears a condition; starts the tasks that it no longer holds back.
    void Set(SetCondition const& request);

    // A task's instance has ended: the next task may run.
    void InstanceEnded(std::uint32_t instance);

    // The wake of the running task; 0 for none.
    std::uint32_t RunningWake() const noexcept { return m_running.wake; }

    // The next wake gets the number after this one.
    void SetLastNumber(std::uint32_t last) noexcept { m_lastWake = last; }

    // The condition that stops the app; empty: none does.
    std::wstring_view StoppedBy() const { return TextOf(&ConditionTraits::stopsTheApp); }

    bool Holds(Condition condition) const { return m_conditions.contains(condition); }

    // The registrations, the tasks that wait, and the conditions in force.
    WakeState State() const;

    // Display text: a line for each registration; for each waiting task, with the reason; for each condition in force.
    std::wstring Text() const;
    std::wstring WaitingText() const;
    std::wstring ConditionText() const;

  private:
    struct Waiting
    {
        RegisteredTask task;
        std::wstring payload;
        std::uint32_t wake;
    };

    struct Running
    {
        std::uint32_t instance = 0; // 0 for none
        std::uint32_t wake = 0;
    };

    std::wstring DropPush(std::wstring_view reason, std::wstring_view text);
    void StartNext();
    std::wstring_view TextOf(bool ConditionTraits::* trait) const; // of a condition with this trait; empty for none
    std::wstring_view HeldBackBy() const { return TextOf(&ConditionTraits::holdsTasksBack); }
    std::wstring WaitsFor() const;

    TaskRegistry m_registry;
    Journal& m_journal;
    Clock const& m_clock;
    TaskInstances& m_instances;
    std::set<Condition> m_conditions;
    std::deque<Waiting> m_waiting;
    Running m_running;
    std::uint32_t m_lastWake = 0;
};

} // namespace sim
