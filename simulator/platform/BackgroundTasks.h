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

// What triggers the app's background tasks: their registrations, pushes, and timers that go by the device's clock. One
// task runs at a time, others wait.
class BackgroundTasks
{
  public:
    BackgroundTasks(Journal& journal, Clock const& clock, TaskInstances& instances);

    // Throws Error when it cannot be kept.
    TaskRegistered Register(RegisterTask const& request);

    std::vector<RegisteredTask> const& All() const noexcept { return m_registry.All(); }

    // Running instances that are not cancelled are left to finish.
    void Unregister(UnregisterTask const& request);

    // The registrations that are kept in that file take the place of these. Nothing runs.
    void Load(std::wstring file);

    // channel: the app's, which a push without a URI comes through. Gives what became of it; throws Error for a payload
    // beyond the limit.
    std::wstring Push(PushChannel const& channel, sim::Push const& push);

    // Starts the timers that are due, each once, however often it was due.
    void RunDue();

    // What held tasks back may do so no longer.
    void Set(SetCondition const& request);

    // A task's instance has ended: the next task may run.
    void InstanceEnded(std::uint32_t instance);

    // Of the task that runs; 0 for none.
    std::uint32_t RunningWake() const noexcept { return m_running.wake; }

    // The next wake has the number after this one.
    void NumberAfter(std::uint32_t last) noexcept { m_lastWake = last; }

    // What keeps everything from the app; empty: nothing does.
    std::wstring_view StoppedBy() const { return TextOf(&ConditionTraits::stopsTheApp); }

    bool Holds(Condition condition) const { return m_conditions.contains(condition); }

    // For people: a line for each registration; for each task that waits, and why; for each condition that holds.
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
        std::uint32_t instance = 0; // 0: none
        std::uint32_t wake = 0;
    };

    std::wstring Lose(std::wstring_view reason, std::wstring_view text);
    void StartNext();
    std::wstring_view TextOf(bool ConditionTraits::* trait) const; // of a condition that has it; empty: none has
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
