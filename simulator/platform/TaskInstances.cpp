#include "simulator/platform/TaskInstances.h"

#include "simulator/base/Error.h"
#include "simulator/base/Overloaded.h"
#include "simulator/protocol/CancellationReason.h"

#include <algorithm>

namespace sim
{

namespace
{

std::wstring NameIn(TaskInstances::Content const& content)
{
    return std::visit(Overloaded{[](ServiceStart const& start) { return start.service; },
                                 [](TaskStart const& start) { return start.task; }},
                      content);
}

// The app service's connection; 0 for a task.
std::uint32_t ConnectionIn(TaskInstances::Content const& content)
{
    auto const* const service = std::get_if<ServiceStart>(&content);
    return service ? service->connection : 0;
}

std::vector<std::wstring> DetailsOf(std::uint32_t instance, TaskInstances::Content const& content)
{
    return WithWake({Detail(L"instance", std::to_wstring(instance)), Detail(L"name", NameIn(content))},
                    WakeOf(content));
}

} // namespace

TaskInstances::TaskInstances(AppProcess& app, Journal& journal, Dispatcher& dispatcher, Limits const& limits)
    : m_app(app), m_journal(journal), m_dispatcher(dispatcher), m_limits(limits)
{
}

std::optional<std::uint32_t> TaskInstances::Start(Content content)
{
    auto const number = ++m_last;
    std::visit([&](auto& start) { start.instance = number; }, content);
    m_journal.Add(L"task-started", DetailsOf(number, content));
    m_instances.emplace(number, Instance{content});
    try
    {
        std::visit([&](auto const& start) { m_app.Activate(start); }, content);
        return number;
    }
    catch (Error const&)
    {
        Lost(number); // the journal has the reason
        return std::nullopt;
    }
}

void TaskInstances::Taken(std::shared_ptr<Peer> const& app, std::uint32_t instance)
{
    auto const entry = m_instances.find(instance);
    if (entry != m_instances.end() && !entry->second.app)
    {
        entry->second.app = app;
        SetLimit(*entry);
    }
}

std::optional<TaskInstances::Content> TaskInstances::Returned(std::shared_ptr<Peer> const& app, std::uint32_t instance)
{
    Taken(app, instance);
    auto const entry = m_instances.find(instance);
    if (entry == m_instances.end() || std::exchange(entry->second.hasReturned, true))
    {
        return std::nullopt;
    }
    return entry->second.content;
}

std::optional<TaskInstances::Ended> TaskInstances::Completed(std::uint32_t instance)
{
    auto const entry = m_instances.find(instance);
    if (entry == m_instances.end() || !entry->second.app)
    {
        return std::nullopt;
    }
    entry->second.app->Send(TaskEnded{instance, ConnectionIn(entry->second.content)});
    return Remove(entry, entry->second.cancelReason ? End::Cancelled : End::Completed, L"task-completed");
}

std::optional<TaskInstances::Ended> TaskInstances::Lost(std::uint32_t instance)
{
    auto const entry = m_instances.find(instance);
    return entry == m_instances.end() ? std::nullopt : std::optional(Remove(entry, End::Lost, L"task-lost"));
}

std::vector<TaskInstances::Ended> TaskInstances::ProcessEnded(Peer const& app)
{
    std::vector<Ended> ended;
    for (auto entry = m_instances.begin(); entry != m_instances.end();)
    {
        auto const current = entry++;
        if (current->second.app.get() == &app)
        {
            ended.push_back(Remove(current, End::Lost, L"task-lost"));
        }
    }
    return ended;
}

void TaskInstances::Cancel(std::uint32_t instance, std::uint32_t reason)
{
    auto const entry = m_instances.find(instance);
    if (entry != m_instances.end())
    {
        Cancel(*entry, reason);
    }
}

void TaskInstances::CancelTask(std::wstring const& taskId, std::uint32_t reason)
{
    for (auto& entry : m_instances)
    {
        auto const* const start = std::get_if<TaskStart>(&entry.second.content);
        if (start && start->taskId == taskId)
        {
            Cancel(entry, reason);
        }
    }
}

void TaskInstances::CancelAll(std::uint32_t reason)
{
    for (auto& entry : m_instances)
    {
        Cancel(entry, reason);
    }
}

void TaskInstances::CancelRunning(std::uint32_t reason)
{
    for (auto& entry : m_instances)
    {
        if (entry.second.app)
        {
            Cancel(entry, reason);
        }
    }
}

bool TaskInstances::IsAnyRunning() const noexcept
{
    return std::ranges::any_of(m_instances, [](auto const& entry) { return entry.second.app != nullptr; });
}

void TaskInstances::SendCancellation(std::uint32_t instance)
{
    auto const entry = m_instances.find(instance);
    if (entry == m_instances.end())
    {
        return;
    }
    auto const& running = entry->second;
    if (running.hasReturned && running.cancelReason)
    {
        running.app->Send(TaskCancelled{instance, ConnectionIn(running.content), *running.cancelReason});
    }
}

std::wstring TaskInstances::Text() const
{
    std::wstring text;
    for (auto const& [number, instance] : m_instances)
    {
        text += L"\n  " + std::to_wstring(number) + L" " + NameIn(instance.content);
        text += instance.app ? L"" : L", waits for the app";
        text += instance.cancelReason ? L", cancelled" : L"";
    }
    return text;
}

void TaskInstances::Cancel(Map::value_type& entry, std::uint32_t reason)
{
    auto& [number, instance] = entry;
    if (instance.cancelReason)
    {
        return;
    }
    instance.cancelReason = reason;
    auto details = DetailsOf(number, instance.content);
    details.push_back(Detail(L"reason", CancellationReason::NameOf(reason)));
    m_journal.Add(L"task-cancelled", std::move(details));
    SendCancellation(number);
    if (instance.app)
    {
        SetLimit(entry);
    }
}

// Replaces the instance's time limit. An app service has none until it is cancelled: it lives as long as its caller.
void TaskInstances::SetLimit(Map::value_type& entry)
{
    auto& [number, instance] = entry;
    m_dispatcher.CancelTimer(instance.limit);
    if (instance.cancelReason)
    {
        instance.limit = m_dispatcher.SetTimer(m_limits.afterCancel, [this, id = number] { Overdue(id); });
    }
    else if (std::holds_alternative<TaskStart>(instance.content))
    {
        instance.limit = m_dispatcher.SetTimer(
            m_limits.task, [this, id = number] { Cancel(id, CancellationReason::executionTimeExceeded); });
    }
}

void TaskInstances::Overdue(std::uint32_t instance)
{
    m_journal.Add(L"task-overdue", DetailsOf(instance, m_instances.at(instance).content));
    m_app.Terminate();
}

TaskInstances::Ended TaskInstances::Remove(Map::iterator entry, End end, std::wstring const& event)
{
    auto const node = m_instances.extract(entry);
    m_dispatcher.CancelTimer(node.mapped().limit);
    m_journal.Add(event, DetailsOf(node.key(), node.mapped().content));
    return {node.mapped().content, end};
}

} // namespace sim
