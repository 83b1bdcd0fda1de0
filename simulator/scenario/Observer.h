#pragma once
#include "doctor/show/Follow.h"
#include "simulator/client/BrokerClient.h"
#include "simulator/scenario/Helpers.h"
#include "simulator/scenario/Timeline.h"

#include <deque>
#include <functional>
#include <map>
#include <memory>

namespace sim
{

// Follows the device's journal, the app's log and the helpers while a scenario plays, adds everything to the timeline,
// and keeps what no step has taken yet, each kind in its order.
class Observer
{
  public:
    Observer(BrokerClient& broker, Helpers& helpers, Timeline& timeline);

    // Another broker of the same device: the events known from the previous one are skipped.
    void Follow(BrokerClient& broker);

    // Called once a package is registered. A log that was followed before continues.
    void FollowLog(std::wstring const& path);

    // A helper of the scenario runs now.
    void HelperStarted(std::wstring const& name, std::wstring const& arguments);

    // Waits until `done`, which is evaluated whenever something may have arrived. False when the limit is reached
    // first.
    bool WaitUntil(std::function<bool()> const& done, unsigned limitMilliseconds);

    // Takes what has arrived.
    void Collect();

    // Whether the app's last event is not its end.
    bool IsAppRunning() const noexcept { return m_isAppRunning; }

    std::deque<Event> platformEvents;
    std::deque<Event> desktopEvents;
    std::deque<std::string> logLines;                                // as in the file, in UTF-8
    std::map<std::wstring, std::deque<Helpers::Output>> helperLines; // by the helper's name

  private:
    void Sort(Event event);
    void CollectHelpers();
    void AddHelper(std::wstring const& name, std::wstring const& text, std::optional<Event> event);
    void CollectLog();
    void AddLogLine(doctor::Entry const& entry);

    BrokerClient* m_broker = nullptr;
    Helpers& m_helpers;
    Timeline& m_timeline;
    std::map<std::wstring, doctor::Follower> m_logs; // by their paths
    doctor::Follower* m_log = nullptr;
    std::size_t m_seen = 0;  // events
    std::size_t m_known = 0; // how many of the next events are known already
    bool m_isAppRunning = false;
};

} // namespace sim
