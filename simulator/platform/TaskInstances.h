#pragma once
#include "simulator/platform/AppProcess.h"
#include "simulator/platform/Dispatcher.h"
#include "simulator/platform/Journal.h"
#include "simulator/protocol/Activation.h"
#include "simulator/protocol/Peer.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace sim
{

// How long the platform waits, in milliseconds.
struct Limits
{
    unsigned task = 30'000;       // for a trigger task's deferrals, then it is cancelled
    unsigned afterCancel = 5'000; // for the deferrals of a cancelled task, then the process is ended
    unsigned idle = 5'000; // with nothing left to do for an app that is in the background only, then it is suspended
    unsigned suspending = 5'000; // for the deferrals of Suspending
    unsigned suspended = 2'000;  // then such an app is ended
};

// The background tasks that run, one instance for each activation of the app: from the trigger until the last deferral
// is completed, the limits that they keep, and their cancellation. All run in the app's one process.
class TaskInstances
{
  public:
    using Content = std::variant<ServiceStart, TaskStart>;

    enum class End
    {
        Completed,
        Cancelled, // completed after a cancellation
        Gone       // the process ended, or did not even start
    };

    // An instance that has ended.
    struct Ended
    {
        Content content;
        End end;
    };

    TaskInstances(AppProcess& app, Journal& journal, Dispatcher& dispatcher, Limits const& limits);

    // The next instance has the number after this one.
    void NumberAfter(std::uint32_t last) noexcept { m_last = last; }

    // Activates the app; content: its instance is given here. Gives the instance, or nothing when the app does not
    // start.
    std::optional<std::uint32_t> Start(Content content);

    // What the app's process says of an instance. Nothing for one that has ended. Returned: what has returned, once.
    void Taken(std::shared_ptr<Peer> const& app, std::uint32_t instance);
    std::optional<Content> Returned(std::shared_ptr<Peer> const& app, std::uint32_t instance);
    std::optional<Ended> Completed(std::uint32_t instance);

    // The activation did not reach a process.
    std::optional<Ended> Lost(std::uint32_t instance);

    // The process of an app has ended, and with it the instances that it had taken.
    std::vector<Ended> ProcessEnded(Peer const& app);

    // Once for each instance. The app is told when OnBackgroundActivated has returned.
    void Cancel(std::uint32_t instance, std::uint32_t reason);
    void CancelTask(std::wstring const& taskId, std::uint32_t reason);
    void CancelAll(std::uint32_t reason);
    void CancelRunning(std::uint32_t reason); // those that the app's process has taken

    // Tells the app of a cancellation that came before OnBackgroundActivated had returned.
    void TellCancellation(std::uint32_t instance);

    // For people: a line for each.
    std::wstring Text() const;

    std::size_t Count() const noexcept { return m_instances.size(); }

    // Whether the app's process has taken one.
    bool IsAnyRunning() const noexcept;

  private:
    struct Instance
    {
        Content content;
        std::shared_ptr<Peer> app = {}; // once it was taken
        bool hasReturned = false;
        std::optional<std::uint32_t> cancelReason = {};
        Dispatcher::TimerId limit = 0;
    };

    using Map = std::map<std::uint32_t, Instance>; // by number, so in the order of their start

    void Cancel(Map::value_type& entry, std::uint32_t reason);
    void SetLimit(Map::value_type& entry);
    void Overdue(std::uint32_t instance);
    Ended Remove(Map::iterator entry, End end, std::wstring const& event);

    AppProcess& m_app;
    Journal& m_journal;
    Dispatcher& m_dispatcher;
    Limits m_limits;
    Map m_instances;
    std::uint32_t m_last = 0;
};

} // namespace sim
