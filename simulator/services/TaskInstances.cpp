#include "simulator/services/TaskInstances.h"

#include "simulator/model/Event.h"
#include "simulator/model/Text.h"
#include "simulator/services/CancellationReason.h"

namespace sim
{

namespace
{

std::vector<std::wstring> DetailsOf(unsigned number, std::wstring const& name)
{
    return {Detail(L"instance", std::to_wstring(number)), Detail(L"name", name)};
}

} // namespace

TaskInstances::TaskInstances(Outside const& outside, Limits limits, Alarms& alarms)
    : m_outside(outside), m_limits(limits), m_alarms(alarms)
{
}

std::wstring TaskInstances::Add(Start start)
{
    m_alarms.Cancel(m_idleAlarm);
    auto const number = ++m_last;
    auto id = std::to_wstring(number);
    auto const kind = start.kind;
    auto more = start.words;
    more.insert(more.begin(), id);
    m_outside.report(L"task-started", DetailsOf(number, start.name));
    m_instances.emplace(number, Instance{std::move(start)});
    m_outside.activate(kind, std::move(more)); // last: it may be lost in there
    return id;
}

void TaskInstances::Taken(std::shared_ptr<Peer> const& app, std::wstring const& id)
{
    auto const entry = Find(id);
    if (entry != m_instances.end() && !entry->second.app)
    {
        entry->second.app = app;
        SetLimit(*entry);
    }
}

void TaskInstances::Returned(std::shared_ptr<Peer> const& app, std::wstring const& id)
{
    Taken(app, id);
    auto const entry = Find(id);
    if (entry == m_instances.end() || entry->second.hasReturned)
    {
        return;
    }
    entry->second.hasReturned = true;
    if (entry->second.start.returned)
    {
        entry->second.start.returned(app);
    }
    if (auto const reason = entry->second.cancelReason)
    {
        SendCancel(*entry, *reason);
    }
}

void TaskInstances::Completed(std::wstring const& id)
{
    auto const entry = Find(id);
    if (entry != m_instances.end() && entry->second.app)
    {
        entry->second.app->Send({L"ended", id, ConnectionOf(entry->second)});
        Remove(entry, entry->second.cancelReason ? End::Cancelled : End::Completed, L"task-completed");
        WatchIdleness();
    }
}

void TaskInstances::Lost(std::wstring const& id)
{
    auto const entry = Find(id);
    if (entry != m_instances.end())
    {
        Remove(entry, End::Gone, L"task-lost");
    }
}

void TaskInstances::ProcessGone(Peer const& app)
{
    std::vector<unsigned> gone;
    for (auto const& [number, instance] : m_instances)
    {
        if (instance.app.get() == &app)
        {
            gone.push_back(number);
        }
    }
    for (auto const number : gone)
    {
        // Looked for anew: the end of one may start others.
        Remove(m_instances.find(number), End::Gone, L"task-lost");
    }
}

void TaskInstances::Cancel(std::wstring const& id, int reason)
{
    auto const entry = Find(id);
    if (entry != m_instances.end())
    {
        Cancel(*entry, reason);
    }
}

void TaskInstances::CancelTask(std::wstring const& taskId, int reason)
{
    for (auto& entry : m_instances)
    {
        if (entry.second.start.taskId == taskId)
        {
            Cancel(entry, reason);
        }
    }
}

void TaskInstances::CancelAll(int reason)
{
    for (auto& entry : m_instances)
    {
        Cancel(entry, reason);
    }
}

std::wstring TaskInstances::Text() const
{
    std::wstring text;
    for (auto const& [number, instance] : m_instances)
    {
        text += L"\n  " + std::to_wstring(number) + L" " + instance.start.name;
        text += instance.app ? L"" : L", waits for the app";
        text += instance.cancelReason ? L", cancelled" : L"";
    }
    return text;
}

TaskInstances::Map::iterator TaskInstances::Find(std::wstring const& id)
{
    auto const number = ParseNumber(id);
    return number ? m_instances.find(*number) : m_instances.end();
}

void TaskInstances::Cancel(Map::value_type& entry, int reason)
{
    auto& [number, instance] = entry;
    if (instance.cancelReason)
    {
        return;
    }
    instance.cancelReason = reason;
    auto details = DetailsOf(number, instance.start.name);
    details.push_back(Detail(L"reason", CancellationReason::NameOf(reason)));
    m_outside.report(L"task-cancelled", std::move(details));
    if (instance.hasReturned)
    {
        SendCancel(entry, reason);
    }
    if (instance.app)
    {
        SetLimit(entry);
    }
}

// The limit that the instance now has in place of the one before. An app service lives as long as its caller does.
void TaskInstances::SetLimit(Map::value_type& entry)
{
    auto& [number, instance] = entry;
    m_alarms.Cancel(instance.alarm);
    if (instance.cancelReason)
    {
        instance.alarm = m_alarms.Set(m_limits.afterCancel, [this, id = number] { Overdue(id); });
    }
    else if (instance.start.kind == ActivationKind::BackgroundTask)
    {
        instance.alarm = m_alarms.Set(m_limits.task, [this, id = number] {
            Cancel(*m_instances.find(id), CancellationReason::executionTimeExceeded);
        });
    }
}

void TaskInstances::Overdue(unsigned number)
{
    m_outside.report(L"task-overdue", DetailsOf(number, m_instances.at(number).start.name));
    m_outside.endApp();
}

void TaskInstances::SendCancel(Map::value_type const& entry, int reason)
{
    auto const& [number, instance] = entry;
    instance.app->Send({L"cancel", std::to_wstring(number), ConnectionOf(instance), std::to_wstring(reason)});
}

// Of an app service; none for a task.
std::wstring TaskInstances::ConnectionOf(Instance const& instance)
{
    return instance.start.kind == ActivationKind::AppService ? instance.start.words.front() : std::wstring();
}

void TaskInstances::Remove(Map::iterator entry, End end, std::wstring const& event)
{
    auto const node = m_instances.extract(entry);
    m_alarms.Cancel(node.mapped().alarm);
    m_outside.report(event, DetailsOf(node.key(), node.mapped().start.name));
    node.mapped().start.ended(end); // last: it may start another one
}

void TaskInstances::WatchIdleness()
{
    if (!IsIdle())
    {
        return;
    }
    m_outside.report(L"app-idle", {});
    m_idleAlarm = m_alarms.Set(m_limits.idle, [this] {
        if (IsIdle()) // the user may have launched the app meanwhile
        {
            m_outside.endApp();
        }
    });
}

bool TaskInstances::IsIdle() const
{
    return m_instances.empty() && m_outside.runsInBackgroundOnly && m_outside.runsInBackgroundOnly();
}

} // namespace sim
