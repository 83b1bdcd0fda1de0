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

// The app-service connections: between a caller and an instance of the app's background task, and the requests that are
// under way on them, in both directions.
class AppServices
{
  public:
    // To the sender of a request; called once, now or later.
    template <typename Request>
    using Reply = std::function<void(typename Request::Answer const&)>;

    AppServices(Registration const& registration, AppProcess const& app, TaskInstances& instances, Journal& journal);

    // The next connection has the number after this one.
    void NumberAfter(std::uint32_t last) noexcept { m_lastConnection = last; }

    // Each of these as the message that it takes.
    void Open(std::shared_ptr<Peer> const& caller, OpenConnection const& request, Reply<OpenConnection> const& reply);
    void Send(Peer const& from, SendRequest const& request, Reply<SendRequest> const& reply);
    ResponseTaken Respond(Peer const& from, GiveResponse const& request);
    void Completed(Peer const& from, RequestCompleted const& message);
    void Refused(Peer const& from, RequestRefused const& message);
    void Closed(Peer const& from, ConnectionClosed const& message);

    // A process has ended, and with it the connections that it opened. Those to the app end with its task instances.
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
        std::shared_ptr<Peer> app = {};               // once OnBackgroundActivated has returned
        Reply<OpenConnection> opened = {};            // to the caller, until then
        std::vector<RequestArrived> early = {};       // for the caller, until then
        std::optional<ClosedStatus> closedEarly = {}; // by the caller, before the service was there to hear it
    };

    using Connections = std::map<std::uint32_t, Connection>; // by number, from 1

    struct PendingRequest
    {
        std::uint32_t connection;
        std::shared_ptr<Peer> receiver;
        Reply<SendRequest> reply;
        std::optional<std::string> response = {}; // given by its receiver
    };

    void ClosedByCaller(std::uint32_t number, ClosedStatus status);
    void ClosedByService(std::uint32_t number, ClosedStatus status);
    bool Owns(Peer const& from, Connection const& connection, ConnectionEnd end) const;

    // The request of the message, if it has come to this process.
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
