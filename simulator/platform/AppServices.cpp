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
        reply({OpenStatus::AppUnavailable}); // the package is being updated
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
    if (found == m_connections.end() || !MaySend(found->second, request.end, from))
    {
        reply({ResponseStatus::Failure, ""});
        return;
    }
    auto& [number, connection] = *found;
    m_requests.emplace(++m_lastRequest, PendingRequest{number, reply});
    auto const isCaller = request.end == ConnectionEnd::Caller;
    RequestArrived const arrived{number, isCaller ? ConnectionEnd::Service : ConnectionEnd::Caller, m_lastRequest,
                                 request.set};
    if (connection.opened)
    {
        connection.early.push_back(arrived);
        return;
    }
    (isCaller ? connection.app : connection.caller)->Send(arrived);
}

ResponseTaken AppServices::Respond(GiveResponse const& request)
{
    auto const found = m_requests.find(request.request);
    if (found == m_requests.end() || found->second.response)
    {
        return {ResponseStatus::Failure};
    }
    found->second.response = request.set;
    return {ResponseStatus::Success};
}

void AppServices::Completed(RequestCompleted const& message)
{
    EndRequest(message.request, ResponseStatus::Success);
}

void AppServices::Refused(RequestRefused const& message)
{
    EndRequest(message.request, ResponseStatus::Failure);
}

void AppServices::Closed(ConnectionClosed const& message)
{
    if (m_connections.contains(message.connection))
    {
        message.end == ConnectionEnd::Caller ? ClosedByCaller(message.connection, ClosedStatus::Completed)
                                             : ClosedByService(message.connection, ClosedStatus::Completed);
    }
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
        return; // the service itself has closed it
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
        return; // nobody is left to be told
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

// The service may do so before OnBackgroundActivated has returned, when its process is not known here yet.
bool AppServices::MaySend(Connection const& connection, ConnectionEnd end, Peer const& from)
{
    return end == ConnectionEnd::Caller ? connection.caller.get() == &from && connection.app
                                        : !connection.closedEarly && (!connection.app || connection.app.get() == &from);
}

void AppServices::EndRequest(std::uint32_t number, ResponseStatus status)
{
    if (auto const node = m_requests.extract(number))
    {
        auto const& [connection, reply, response] = node.mapped();
        reply({status, status == ResponseStatus::Success ? response.value_or("") : ""});
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
