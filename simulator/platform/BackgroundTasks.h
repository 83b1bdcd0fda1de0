#pragma once
#include "simulator/platform/Clock.h"
#include "simulator/platform/Journal.h"
#include "simulator/platform/PushChannel.h"
#include "simulator/platform/TaskInstances.h"
#include "simulator/platform/TaskRegistry.h"
#include "simulator/protocol/Requests.h"

#include <deque>
#include <optional>
#include <string>

namespace sim
{

// What triggers the app's background tasks: their registrations, pushes, and timers that go by the device's clock.
class BackgroundTasks
{
  public:
    BackgroundTasks(Journal& journal, Clock const& clock, TaskInstances& instances);

    // Throws Error when it cannot be kept.
    TaskRegistered Register(RegisterTask const& request);

    std::vector<RegisteredTask> const& All() const noexcept { return m_registry.All(); }

    // Running instances that are not cancelled are left to finish.
    void Unregister(UnregisterTask const& request);

    // The registrations that are kept in that file take the place of these. Nothing runs. Throws Error when the file
    // cannot be read.
    void Load(std::wstring file);

    // One push at a time: others wait. channel: what it comes through. Gives what became of it; throws Error for a
    // payload beyond the limit.
    std::wstring Push(PushChannel const& channel, std::wstring const& payload);

    // Starts the timers that are due, each once, however often it was due.
    void RunDue();

    // A task's instance has ended: the next push may come.
    void InstanceEnded(std::uint32_t instance);

    // For people: a line for each registration.
    std::wstring Text() const;

  private:
    struct WaitingPush
    {
        RegisteredTask task;
        std::wstring payload;
    };

    std::optional<std::uint32_t> Start(RegisteredTask const& task, std::wstring const& payload);
    void StartNextPush();

    TaskRegistry m_registry;
    Journal& m_journal;
    Clock const& m_clock;
    TaskInstances& m_instances;
    std::deque<WaitingPush> m_pushes;
    std::optional<std::uint32_t> m_runningPush; // its instance
};

} // namespace sim
