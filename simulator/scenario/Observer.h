#pragma once
#include "simulator/client/BrokerClient.h"
#include "simulator/log/LogFile.h"
#include "simulator/log/LogLine.h"
#include "simulator/scenario/Helpers.h"
#include "simulator/scenario/Timeline.h"

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>

namespace sim
{

// Follows the device's journal, the app's log and the helpers while a scenario plays, puts all on the timeline, and
// keeps what no step has asked for yet: in order, for the platform's events, the desktop component's, each helper's
// lines and end, and the log's lines.
class Observer
{
  public:
    Observer(BrokerClient& broker, Helpers& helpers, Timeline& timeline);

    // Another one of the device: what it says first is known from the one before.
    void Follow(BrokerClient& broker);

    // There is no log before a package is registered. One that was followed before goes on.
    void FollowLog(std::wstring const& path);

    // Waits until `done`, looked at whenever something has come. False when the time is up before.
    bool WaitUntil(std::function<bool()> const& done, unsigned limitMilliseconds);

    // Takes what has come by now.
    void Collect();

    // Whether the last that was heard of the app is its end.
    bool IsAppOver() const noexcept { return m_isAppRunning == false; }

    bool IsAppRunning() const noexcept { return m_isAppRunning == true; }

    std::deque<Event> platformEvents;
    std::deque<Event> desktopEvents;
    std::deque<std::wstring> logLines;                             // as in the file
    std::map<std::wstring, std::deque<Helpers::Said>> helperLines; // by the helper's name

  private:
    void Sort(Event event);
    void CollectHelpers();
    void CollectLog();

    BrokerClient* m_broker = nullptr;
    Helpers& m_helpers;
    Timeline& m_timeline;
    std::map<std::wstring, LogFile> m_logs; // by their paths
    LogFile* m_log = nullptr;
    std::size_t m_seen = 0;             // events
    std::size_t m_known = 0;            // of those that come, the first so many
    std::optional<bool> m_isAppRunning; // nothing was heard of it without a value
};

} // namespace sim
