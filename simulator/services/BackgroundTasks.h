#pragma once
#include "simulator/services/Outside.h"
#include "simulator/services/PushChannel.h"
#include "simulator/services/TaskInstances.h"
#include "simulator/services/TaskRegistry.h"
#include "simulator/services/VirtualClock.h"

#include <deque>
#include <string>

namespace sim
{

// What triggers the app's background tasks: their registrations, pushes, and timers that go by the device's clock.
class BackgroundTasks
{
  public:
    // file: of the registrations.
    BackgroundTasks(std::wstring file, Outside const& outside, VirtualClock const& clock, TaskInstances& instances);

    // The new registration's id, or a failing result code.
    struct Registration
    {
        std::int32_t result = 0;
        std::wstring id;
    };

    // trigger: push or timer. minutes, once: of a timer. Throws Error when it cannot be kept.
    Registration Register(std::wstring const& name, std::wstring const& trigger, unsigned minutes, bool once);

    std::vector<RegisteredTask> const& All() const noexcept { return m_registry.All(); }

    // cancel: running instances too; else they are left to finish.
    void Unregister(std::wstring const& id, bool cancel);

    // Removes all registrations. Nothing runs.
    void Clear();

    // One push at a time: others wait. channel: what it comes through. Gives what became of it; throws Error for a
    // payload beyond the limit.
    std::wstring Push(PushChannel const& channel, std::wstring const& payload);

    // Starts the timers that are due, each once, however often it was due.
    void RunDue();

    // For people: a line for each registration.
    std::wstring Text() const;

  private:
    struct WaitingPush
    {
        RegisteredTask task;
        std::wstring payload;
    };

    void Start(RegisteredTask const& task, std::wstring const& payload, std::function<void(TaskInstances::End)> ended);
    void StartNextPush();

    TaskRegistry m_registry;
    Outside const& m_outside;
    VirtualClock const& m_clock;
    TaskInstances& m_instances;
    std::deque<WaitingPush> m_pushes;
    bool m_isPushRunning = false;
};

} // namespace sim
