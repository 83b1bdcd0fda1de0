#pragma once
#include "simulator/platform/StateFile.h"
#include "simulator/protocol/Activation.h"

#include <cstdint>
#include <string>
#include <vector>

namespace sim
{

struct RegisteredTask
{
    std::wstring id; // a GUID without braces
    std::wstring name;
    Trigger trigger = Trigger::Push;
    unsigned minutes = 0; // the period of a timer
    bool once = false;    // whether a timer runs a single time
    std::int64_t due = 0; // the next run of a timer, by the device's clock
};

// The registrations of background tasks, in their order, saved on the device.
class TaskRegistry
{
  public:
    static constexpr unsigned shortestPeriod = 15; // minutes

    explicit TaskRegistry(StateFile file);

    std::vector<RegisteredTask> const& All() const noexcept { return m_tasks; }

    // These throw Error, and change nothing, when the change cannot be saved.
    void Add(RegisteredTask task);
    void Remove(std::wstring const& id); // ignores an unknown id
    void SetDue(std::wstring const& id, std::int64_t due);

  private:
    void Save(std::vector<RegisteredTask> tasks);

    StateFile m_file;
    std::vector<RegisteredTask> m_tasks;
};

} // namespace sim
