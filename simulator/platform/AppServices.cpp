#include "simulator/platform/AppServices.h"

#include "simulator/base/Text.h"
#include "simulator/protocol/CancellationReason.h"

namespace sim
{

AppServices::AppServices(Registration const& registration, AppProcess const& app, TaskInstances& instances,
                         Journal& journal)
    : m_registration(registration), m_app(app), m_instances(instances), m_journal(journal)
{
}

void AppServices::Open(std::shared_ptr<Peer> const& caller, OpenConnection const& request,
                       Reply<OpenConnection> const& reply)
{
    auto const* const package = m_registration.Current();
    if (package == nullptr || !EqualIgnoringCase(request.family, package->FamilyName()))
    {
        reply({OpenStatus::AppNotInstalled});
        return;
    }
    if (!package->manifest.DeclaresAppService(request.service))
    {
        reply({OpenStatus::AppServiceUnavailable});
        return;
    }
    if (m_app.IsHeld())
    {
        reply({OpenStatus::AppUnavailable});
        return;
    }
    auto const number = ++m_lastConnection;
    auto const callerFamily = m_app.IsPeer(*caller) ? package->FamilyName() : std::wstring();
    auto const instance =
        m_instances.Start(ServiceStart{.connection = number, .service = request.service, .callerFamily = callerFamily});
    if (!instance)
    {
        ReportClosed(number, ConnectionEnd::Service, ClosedStatus::Canceled);
        reply({OpenStatus::AppUnavailable});
        return;
    }
    m_connections.emplace(
        number, Connection{.service = request.service, .instance = *instance, .caller = caller, .opened = reply});
}

void AppServices::Send(Peer const& from, SendRequest const& request, Reply<SendRequest> const& reply)
{
    auto const found = m_connections.find(request.connection);
    auto const isCaller = request.end == ConnectionEnd::Caller;
    if (found == m_connections.end() || !Owns(from, found->second, request.end) ||
        (isCaller ? !found->second.app : found->second.closedEarly.has_value()))
    {
        reply({ResponseStatus::Failure, ""});
        return;
    }
    auto& [number, connection] = *found;
    auto const& receiver = isCaller ? connection.app : connection.caller;
    m_requests.emplace(++m_lastRequest, PendingRequest{number, receiver, reply});
    RequestArrived const arrived{number, isCaller ? ConnectionEnd::Service : ConnectionEnd::Caller, m_lastRequest,
                                 request.set};
    if (connection.opened)
    {
        connection.early.push_back(arrived);
        return;
    }
    receiver->Send(arrived);
}

ResponseTaken AppServices::Respond(Peer const& from, GiveResponse const& request)
{
    auto* const pending = RequestOf(from, request);
    if (!pending || pending->response)
    {
        return {ResponseStatus::Failure};
    }
    pending->response = request.set;
    return {ResponseStatus::Success};
}

void AppServices::Completed(Peer const& from, RequestCompleted const& message)
{
    if (RequestOf(from, message))
    {
        EndRequest(message.request, ResponseStatus::Success);
    }
}

void AppServices::Refused(Peer const& from, RequestRefused const& message)
{
    if (RequestOf(from, message))
    {
        EndRequest(message.request, ResponseStatus::Failure);
    }
}

void AppServices::Closed(Peer const& from, ConnectionClosed const& message)
{
    auto const found = m_connections.find(message.connection);
    if (found == m_connections.end() || (found->second.closedEarly && message.end == ConnectionEnd::Caller))
    {
        return; // already closed
    }
    if (!Owns(from, found->second, message.end))
    {
        m_journal.AddRefusal<ConnectionClosed>(L"connection", std::to_wstring(message.connection));
        return;
    }
    message.end == ConnectionEnd::Caller ? ClosedByCaller(message.connection, ClosedStatus::Completed)
                                         : ClosedByService(message.connection, ClosedStatus::Completed);
}

void AppServices::CallerEnded(Peer const& caller)
{
    std::vector<std::uint32_t> ended;
    for (auto const& [number, connection] : m_connections)
    {
        if (connection.caller.get() == &caller)
        {
            ended.push_back(number);
        }
    }
    for (auto const number : ended)
    {
        ClosedByCaller(number, ClosedStatus::Canceled);
    }
}

void AppServices::ServiceReturned(std::uint32_t number, std::shared_ptr<Peer> const& app)
{
    auto const found = m_connections.find(number);
    if (found == m_connections.end())
    {
        return; // the service has closed it
    }
    auto& connection = found->second;
    if (connection.closedEarly)
    {
        app->Send(OtherEndClosed{number, ConnectionEnd::Service, *connection.closedEarly});
        m_connections.erase(found);
        return;
    }
    connection.app = app;
    m_journal.Add(L"app-service-opened",
                  {Detail(L"connection", std::to_wstring(number)), Detail(L"name", connection.service)});
    std::exchange(connection.opened, nullptr)({OpenStatus::Success, number});
    for (auto const& request : std::exchange(connection.early, {}))
    {
        connection.caller->Send(request);
    }
}

void AppServices::ServiceEnded(std::uint32_t number, TaskInstances::End end)
{
    if (m_connections.contains(number))
    {
        ClosedByService(number,
                        end == TaskInstances::End::Completed ? ClosedStatus::Completed : ClosedStatus::Canceled);
    }
}

void AppServices::ClosedByCaller(std::uint32_t number, ClosedStatus status)
{
    ReportClosed(number, ConnectionEnd::Caller, status);
    FailRequests(number);
    auto& connection = m_connections.at(number);
    auto const instance = connection.instance;
    if (connection.app)
    {
        connection.app->Send(OtherEndClosed{number, ConnectionEnd::Service, status});
        m_connections.erase(number);
    }
    else
    {
        connection.closedEarly = status;
        connection.caller.reset();
    }
    m_instances.Cancel(instance, CancellationReason::resourceRevocation);
}

void AppServices::ClosedByService(std::uint32_t number, ClosedStatus status)
{
    auto const node = m_connections.extract(number);
    auto const& connection = node.mapped();
    if (connection.closedEarly)
    {
        return; // the caller has closed it
    }
    ReportClosed(number, ConnectionEnd::Service, status);
    FailRequests(number);
    if (connection.opened)
    {
        connection.opened({OpenStatus::AppUnavailable});
        return;
    }
    connection.caller->Send(OtherEndClosed{number, ConnectionEnd::Caller, status});
}

// Until OnBackgroundActivated has returned, the service's end belongs to the running app.
bool AppServices::Owns(Peer const& from, Connection const& connection, ConnectionEnd end) const
{
    if (end == ConnectionEnd::Service && !connection.app)
    {
        return m_app.IsPeer(from);
    }
    return (end == ConnectionEnd::Caller ? connection.caller : connection.app).get() == &from;
}

template <typename Message>
AppServices::PendingRequest* AppServices::RequestOf(Peer const& from, Message const& message)
{
    auto const found = m_requests.find(message.request);
    if (found == m_requests.end())
    {
        return nullptr;
    }
    if (found->second.receiver.get() != &from)
    {
        m_journal.AddRefusal<Message>(L"request", std::to_wstring(message.request));
        return nullptr;
    }
    return &found->second;
}

void AppServices::EndRequest(std::uint32_t number, ResponseStatus status)
{
    if (auto const node = m_requests.extract(number))
    {
        auto const& request = node.mapped();
        request.reply({status, status == ResponseStatus::Success ? request.response.value_or("") : ""});
    }
}

void AppServices::FailRequests(std::uint32_t connection)
{
    std::erase_if(m_requests, [&](auto const& entry) {
        auto const isOnIt = entry.second.connection == connection;
        if (isOnIt)
        {
            entry.second.reply({ResponseStatus::Failure, ""});
        }
        return isOnIt;
    });
}

void AppServices::ReportClosed(std::uint32_t number, ConnectionEnd by, ClosedStatus status)
{
    m_journal.Add(L"app-service-closed",
                  {Detail(L"connection", std::to_wstring(number)),
                   Detail(L"by", by == ConnectionEnd::Caller ? L"caller" : L"service"),
                   Detail(L"status", status == ClosedStatus::Completed ? L"Completed" : L"Canceled")});
}

} // namespace sim
