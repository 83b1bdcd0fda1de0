#pragma once
#include "simulator/platform/AppProcess.h"
#include "simulator/platform/Journal.h"
#include "simulator/platform/Registration.h"
#include "simulator/platform/TaskInstances.h"
#include "simulator/protocol/Messages.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace sim
{

// The app-service connections, each between a caller and an instance of the app's background task, and the pending
// requests on them, in both directions.
class AppServices
{
  public:
    // Answers the sender of a request. Called once, at once or later.
    template <typename Request>
    using Reply = std::function<void(typename Request::Answer const&)>;

    AppServices(Registration const& registration, AppProcess const& app, TaskInstances& instances, Journal& journal);

    // The next connection gets the number after this one.
    void SetLastNumber(std::uint32_t last) noexcept { m_lastConnection = last; }

    // Each handles the message that it takes.
    void Open(std::shared_ptr<Peer> const& caller, OpenConnection const& request, Reply<OpenConnection> const& reply);
    void Send(Peer const& from, SendRequest const& request, Reply<SendRequest> const& reply);
    ResponseTaken Respond(Peer const& from, GiveResponse const& request);
    void Completed(Peer const& from, RequestCompleted const& message);
    void Refused(Peer const& from, RequestRefused const& message);
    void Closed(Peer const& from, ConnectionClosed const& message);

    // A process has ended: closes the connections that it opened. Those to the app end with its task instances.
    void CallerEnded(Peer const& caller);

    // OnBackgroundActivated has returned for this connection, or its instance has ended.
    void ServiceReturned(std::uint32_t number, std::shared_ptr<Peer> const& app);
    void ServiceEnded(std::uint32_t number, TaskInstances::End end);

    std::size_t Count() const noexcept { return m_connections.size(); }

  private:
    struct Connection
    {
        std::wstring service;
        std::uint32_t instance = 0;
        std::shared_ptr<Peer> caller = {};
        std::shared_ptr<Peer> app = {};               // null until OnBackgroundActivated has returned
        Reply<OpenConnection> opened = {};            // to the caller; null after that
        std::vector<RequestArrived> early = {};       // sent to the caller after that
        std::optional<ClosedStatus> closedEarly = {}; // by the caller, before that
    };

    using Connections = std::map<std::uint32_t, Connection>; // by number, from 1

    struct PendingRequest
    {
        std::uint32_t connection;
        std::shared_ptr<Peer> receiver;
        Reply<SendRequest> reply;
        std::optional<std::string> response = {}; // from its receiver
    };

    void ClosedByCaller(std::uint32_t number, ClosedStatus status);
    void ClosedByService(std::uint32_t number, ClosedStatus status);
    bool Owns(Peer const& from, Connection const& connection, ConnectionEnd end) const;

    // The pending request that the message names; null unless this process received it.
    template <typename Message>
    PendingRequest* RequestOf(Peer const& from, Message const& message);
    void EndRequest(std::uint32_t number, ResponseStatus status);
    void FailRequests(std::uint32_t connection);
    void ReportClosed(std::uint32_t number, ConnectionEnd by, ClosedStatus status);

    Registration const& m_registration;
    AppProcess const& m_app;
    TaskInstances& m_instances;
    Journal& m_journal;
    Connections m_connections;
    std::map<std::uint32_t, PendingRequest> m_requests;
    std::uint32_t m_lastConnection = 0;
    std::uint32_t m_lastRequest = 0;
};

} // namespace sim
