#pragma once
#include "simulator/services/Alarms.h"
#include "simulator/services/Outside.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace sim
{

// The background tasks that run, one instance for each activation of the app: from the trigger until the last deferral
// is completed, the limits that they keep, and their cancellation. All run in the app's one process.
class TaskInstances
{
  public:
    enum class End
    {
        Completed,
        Cancelled, // completed after a cancellation
        Gone       // the process ended, or did not even start
    };

    struct Start
    {
        ActivationKind kind;
        std::wstring name;               // of the app service or the task
        std::wstring taskId;             // of the registration; empty for an app service
        std::vector<std::wstring> words; // what the activation carries after the instance
        std::function<void(std::shared_ptr<Peer> const& app)> returned; // OnBackgroundActivated has
        std::function<void(End)> ended;                                 // once
    };

    TaskInstances(Outside const& outside, Limits limits, Alarms& alarms);

    // Gives the instance's id. It may have ended when it returns.
    std::wstring Add(Start start);

    // What the app's process says of an instance. Nothing for one that has ended.
    void Taken(std::shared_ptr<Peer> const& app, std::wstring const& id);
    void Returned(std::shared_ptr<Peer> const& app, std::wstring const& id);
    void Completed(std::wstring const& id);

    // The activation did not reach a process.
    void Lost(std::wstring const& id);

    // The process of an app has gone, and with it the instances that it had taken.
    void ProcessGone(Peer const& app);

    // Once for each instance. It is told when OnBackgroundActivated has returned.
    void Cancel(std::wstring const& id, int reason);
    void CancelTask(std::wstring const& taskId, int reason);
    void CancelAll(int reason);

    // For people: a line for each.
    std::wstring Text() const;

    std::size_t Count() const noexcept { return m_instances.size(); }

  private:
    struct Instance
    {
        Start start;
        std::shared_ptr<Peer> app = {}; // once it was taken
        bool hasReturned = false;
        std::optional<int> cancelReason = {};
        Alarms::Id alarm = 0;
    };

    using Map = std::map<unsigned, Instance>; // by number, so in the order of their start

    Map::iterator Find(std::wstring const& id);
    void Cancel(Map::value_type& entry, int reason);
    void SetLimit(Map::value_type& entry);
    void Overdue(unsigned number);
    static std::wstring ConnectionOf(Instance const& instance);
    static void SendCancel(Map::value_type const& entry, int reason);
    void Remove(Map::iterator entry, End end, std::wstring const& event);
    void WatchIdleness();
    bool IsIdle() const;

    Outside const& m_outside;
    Limits m_limits;
    Alarms& m_alarms;
    Map m_instances;
    unsigned m_last = 0;
    Alarms::Id m_idleAlarm = 0;
};

} // namespace sim
