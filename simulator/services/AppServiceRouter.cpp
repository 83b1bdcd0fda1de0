#include "simulator/services/AppServiceRouter.h"

#include "simulator/model/Event.h"
#include "simulator/model/Text.h"
#include "simulator/services/CancellationReason.h"

namespace sim
{

namespace
{

constexpr wchar_t callerEnd[] = L"caller";
constexpr wchar_t serviceEnd[] = L"service";

// The platform's AppServiceConnectionStatus and AppServiceResponseStatus, as far as they come from here.
enum class OpenStatus
{
    Success = 0,
    AppNotInstalled = 1,
    AppUnavailable = 2,
    AppServiceUnavailable = 3
};

enum class ResponseStatus
{
    Success = 0,
    Failure = 1
};

template <typename Status>
std::wstring NumberOf(Status status)
{
    return std::to_wstring(static_cast<int>(status));
}

Message Opened(OpenStatus status)
{
    return {L"opened", NumberOf(status)};
}

Message Response(ResponseStatus status, std::wstring const& set)
{
    return {L"response", NumberOf(status), set};
}

} // namespace

AppServiceRouter::AppServiceRouter(Outside const& outside, TaskInstances& instances)
    : m_outside(outside), m_instances(instances)
{
}

void AppServiceRouter::Open(std::shared_ptr<Peer> const& caller, std::wstring const& name, std::wstring const& family,
                            Answer const& answer)
{
    auto const installed = m_outside.familyName();
    if (installed.empty() || !EqualIgnoringCase(family, installed))
    {
        answer(Opened(OpenStatus::AppNotInstalled));
        return;
    }
    if (!m_outside.declaresAppService(name))
    {
        answer(Opened(OpenStatus::AppServiceUnavailable));
        return;
    }
    auto const callerFamily = !m_outside.isApp || m_outside.isApp(*caller) ? installed : std::wstring();
    auto const number = ++m_lastConnection;
    m_connections.emplace(number, Connection{.name = name, .caller = caller, .opened = answer});
    auto const instance = m_instances.Add({ActivationKind::AppService,
                                           name,
                                           L"",
                                           {std::to_wstring(number), name, callerFamily},
                                           [this, number](auto const& app) { ServiceReturned(number, app); },
                                           [this, number](TaskInstances::End end) { ServiceEnded(number, end); }});
    if (auto const made = m_connections.find(number); made != m_connections.end()) // gone if the app did not start
    {
        made->second.instance = instance;
    }
}

void AppServiceRouter::Send(Peer const& from, std::wstring const& connection, std::wstring const& end,
                            std::wstring const& set, Answer const& answer)
{
    auto const found = Find(connection);
    auto const isCaller = end == callerEnd;
    if (found == m_connections.end() ||
        !(isCaller ? MayCallerSend(found->second, from) : MayServiceSend(found->second, from)))
    {
        answer(Response(ResponseStatus::Failure, L""));
        return;
    }
    auto const number = ++m_lastRequest;
    m_requests.emplace(number, Request{found->first, answer});
    Message const message = {L"request", connection, isCaller ? serviceEnd : callerEnd, std::to_wstring(number), set};
    if (found->second.opened)
    {
        found->second.early.push_back(message);
        return;
    }
    (isCaller ? found->second.service : found->second.caller)->Send(message);
}

Message AppServiceRouter::Respond(std::wstring const& request, std::wstring const& set)
{
    auto const found = m_requests.find(ParseNumber(request).value_or(0));
    auto const isFirst = found != m_requests.end() && !found->second.response;
    if (isFirst)
    {
        found->second.response = set;
    }
    return {L"responded", NumberOf(isFirst ? ResponseStatus::Success : ResponseStatus::Failure)};
}

void AppServiceRouter::RequestCompleted(std::wstring const& request)
{
    if (auto const node = m_requests.extract(ParseNumber(request).value_or(0)))
    {
        node.mapped().answer(Response(ResponseStatus::Success, node.mapped().response.value_or(L"")));
    }
}

void AppServiceRouter::RequestRefused(std::wstring const& request)
{
    if (auto const node = m_requests.extract(ParseNumber(request).value_or(0)))
    {
        node.mapped().answer(Response(ResponseStatus::Failure, L""));
    }
}

void AppServiceRouter::Close(std::wstring const& connection, std::wstring const& end)
{
    auto const found = Find(connection);
    if (found != m_connections.end())
    {
        end == callerEnd ? ClosedByCaller(found->first, ClosedStatus::Completed)
                         : ClosedByService(found->first, ClosedStatus::Completed);
    }
}

void AppServiceRouter::CallerGone(Peer const& caller)
{
    std::vector<unsigned> gone;
    for (auto const& [number, connection] : m_connections)
    {
        if (connection.caller.get() == &caller)
        {
            gone.push_back(number);
        }
    }
    for (auto const number : gone)
    {
        ClosedByCaller(number, ClosedStatus::Canceled);
    }
}

void AppServiceRouter::ServiceReturned(unsigned number, std::shared_ptr<Peer> const& app)
{
    auto const found = m_connections.find(number);
    if (found == m_connections.end())
    {
        return; // the service itself has closed it
    }
    auto& connection = found->second;
    if (connection.closedEarly)
    {
        app->Send({L"service-closed", std::to_wstring(number), serviceEnd, NumberOf(*connection.closedEarly)});
        m_connections.erase(found);
        return;
    }
    connection.service = app;
    m_outside.report(L"app-service-opened",
                     {Detail(L"connection", std::to_wstring(number)), Detail(L"name", connection.name)});
    auto opened = Opened(OpenStatus::Success);
    opened.push_back(std::to_wstring(number));
    connection.opened(opened);
    connection.opened = nullptr;
    for (auto const& message : connection.early)
    {
        connection.caller->Send(message);
    }
    connection.early.clear();
}

void AppServiceRouter::ServiceEnded(unsigned number, TaskInstances::End end)
{
    if (m_connections.contains(number))
    {
        ClosedByService(number,
                        end == TaskInstances::End::Completed ? ClosedStatus::Completed : ClosedStatus::Canceled);
    }
}

void AppServiceRouter::ClosedByCaller(unsigned number, ClosedStatus status)
{
    ReportClosed(number, callerEnd, status);
    FailRequests(number);
    auto& connection = m_connections.at(number);
    auto const instance = connection.instance;
    if (connection.service)
    {
        connection.service->Send({L"service-closed", std::to_wstring(number), serviceEnd, NumberOf(status)});
        m_connections.erase(number);
    }
    else
    {
        connection.closedEarly = status;
        connection.caller.reset();
    }
    m_instances.Cancel(instance, CancellationReason::resourceRevocation);
}

void AppServiceRouter::ClosedByService(unsigned number, ClosedStatus status)
{
    auto const node = m_connections.extract(number);
    auto const& connection = node.mapped();
    if (connection.closedEarly)
    {
        return; // nobody is left to be told
    }
    ReportClosed(number, serviceEnd, status);
    FailRequests(number);
    if (connection.opened)
    {
        connection.opened(Opened(OpenStatus::AppUnavailable));
        return;
    }
    connection.caller->Send({L"service-closed", std::to_wstring(number), callerEnd, NumberOf(status)});
}

bool AppServiceRouter::MayCallerSend(Connection const& connection, Peer const& from)
{
    return connection.caller.get() == &from && connection.service;
}

// Also before OnBackgroundActivated has returned, when its process is not known here yet.
bool AppServiceRouter::MayServiceSend(Connection const& connection, Peer const& from)
{
    return !connection.closedEarly && (!connection.service || connection.service.get() == &from);
}

void AppServiceRouter::FailRequests(unsigned number)
{
    std::erase_if(m_requests, [&](auto const& entry) {
        auto const isOnIt = entry.second.connection == number;
        if (isOnIt)
        {
            entry.second.answer(Response(ResponseStatus::Failure, L""));
        }
        return isOnIt;
    });
}

void AppServiceRouter::ReportClosed(unsigned number, std::wstring const& by, ClosedStatus status) const
{
    m_outside.report(L"app-service-closed",
                     {Detail(L"connection", std::to_wstring(number)), Detail(L"by", by),
                      Detail(L"status", status == ClosedStatus::Completed ? L"Completed" : L"Canceled")});
}

AppServiceRouter::Connections::iterator AppServiceRouter::Find(std::wstring const& id)
{
    return m_connections.find(ParseNumber(id).value_or(0));
}

} // namespace sim
