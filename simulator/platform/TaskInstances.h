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

// Time limits of the platform, in milliseconds.
struct Limits
{
    unsigned task = 30'000;       // for a trigger task's deferrals; then it is cancelled
    unsigned afterCancel = 5'000; // for a cancelled task's deferrals; then the process is terminated
    unsigned idle = 5'000;        // of an app in the background; then Suspending is raised
    unsigned suspending = 5'000;  // for the deferrals of Suspending; then it is suspended
    unsigned suspended = 2'000;   // then it is terminated
};

// The instances of background tasks, one for each activation of the app, from the trigger until the last deferral is
// completed: their time limits and their cancellation. All run in the app's single process.
class TaskInstances
{
  public:
    using Content = std::variant<ServiceStart, TaskStart>;

    enum class End
    {
        Completed,
        Cancelled, // completed after a cancellation
        Lost       // the process ended, or did not start
    };

    // An instance that has ended.
    struct Ended
    {
        Content content;
        End end;
    };

    TaskInstances(AppProcess& app, Journal& journal, Dispatcher& dispatcher, Limits const& limits);

    // The next instance gets the number after this one.
    void SetLastNumber(std::uint32_t last) noexcept { m_last = last; }

    // Activates the app. Sets the instance in the content and returns it; nullopt when the app does not start.
    std::optional<std::uint32_t> Start(Content content);

    // The app's process has taken an instance; its OnBackgroundActivated has returned; its deferrals are completed. An
    // instance that has ended is ignored. Returned returns the content once.
    void Taken(std::shared_ptr<Peer> const& app, std::uint32_t instance);
    std::optional<Content> Returned(std::shared_ptr<Peer> const& app, std::uint32_t instance);
    std::optional<Ended> Completed(std::uint32_t instance);

    // The activation has reached no process.
    std::optional<Ended> Lost(std::uint32_t instance);

    // The app's process has ended: ends the instances that it had taken.
    std::vector<Ended> ProcessEnded(Peer const& app);

    // Takes effect once for each instance. The app is notified once OnBackgroundActivated has returned.
    void Cancel(std::uint32_t instance, std::uint32_t reason);
    void CancelTask(std::wstring const& taskId, std::uint32_t reason);
    void CancelAll(std::uint32_t reason);
    void CancelRunning(std::uint32_t reason); // the instances that the app's process has taken

    // Sends the app a cancellation from before OnBackgroundActivated had returned.
    void SendCancellation(std::uint32_t instance);

    // Display text: a line for each.
    std::wstring Text() const;

    std::size_t Count() const noexcept { return m_instances.size(); }

    // Whether the app's process has taken an instance.
    bool IsAnyRunning() const noexcept;

  private:
    struct Instance
    {
        Content content;
        std::shared_ptr<Peer> app = {}; // null until it is taken
        bool hasReturned = false;
        std::optional<std::uint32_t> cancelReason = {};
        Dispatcher::TimerId limit = {};
    };

    using Map = std::map<std::uint32_t, Instance>; // by number, which is the order of their start

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
