#pragma once
#include "simulator/services/Outside.h"
#include "simulator/services/TaskInstances.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace sim
{

// The app-service connections: between a caller and an instance of the app's background task, and the requests that are
// under way on them, in both directions.
class AppServiceRouter
{
  public:
    using Answer = std::function<void(Message)>;

    AppServiceRouter(Outside const& outside, TaskInstances& instances);

    // Each of these as the message of the same name (Services); answered at once or later, once.
    void Open(std::shared_ptr<Peer> const& caller, std::wstring const& name, std::wstring const& family,
              Answer const& answer);
    void Send(Peer const& from, std::wstring const& connection, std::wstring const& end, std::wstring const& set,
              Answer const& answer);
    Message Respond(std::wstring const& request, std::wstring const& set);
    void RequestCompleted(std::wstring const& request);
    void RequestRefused(std::wstring const& request);
    void Close(std::wstring const& connection, std::wstring const& end);

    // A process has gone, and with it the connections that it opened. Those to the app end with its task instances.
    void CallerGone(Peer const& caller);

    std::size_t Count() const noexcept { return m_connections.size(); }

  private:
    enum class ClosedStatus
    {
        Completed = 0,
        Canceled = 1
    };

    struct Connection
    {
        std::wstring name;
        std::wstring instance = {};
        std::shared_ptr<Peer> caller = {};
        std::shared_ptr<Peer> service = {};           // once OnBackgroundActivated has returned
        Answer opened = {};                           // to the caller, until then
        std::vector<Message> early = {};              // for the caller, until then
        std::optional<ClosedStatus> closedEarly = {}; // by the caller, before the service was there to hear it
    };

    using Connections = std::map<unsigned, Connection>; // by number, from 1

    struct Request
    {
        unsigned connection;
        Answer answer;                             // to its sender
        std::optional<std::wstring> response = {}; // given by its receiver
    };

    void ServiceReturned(unsigned number, std::shared_ptr<Peer> const& app);
    void ServiceEnded(unsigned number, TaskInstances::End end);
    void ClosedByCaller(unsigned number, ClosedStatus status);
    void ClosedByService(unsigned number, ClosedStatus status);
    static bool MayCallerSend(Connection const& connection, Peer const& from);
    static bool MayServiceSend(Connection const& connection, Peer const& from);
    void FailRequests(unsigned number);
    void ReportClosed(unsigned number, std::wstring const& by, ClosedStatus status) const;
    Connections::iterator Find(std::wstring const& id);

    Outside const& m_outside;
    TaskInstances& m_instances;
    Connections m_connections;
    std::map<unsigned, Request> m_requests;
    unsigned m_lastConnection = 0;
    unsigned m_lastRequest = 0;
};

} // namespace sim
