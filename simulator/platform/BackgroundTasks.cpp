#include "simulator/platform/BackgroundTasks.h"

#include "simulator/base/Error.h"
#include "simulator/base/Text.h"
#include "simulator/protocol/CancellationReason.h"

#include <combaseapi.h>

namespace sim
{

namespace
{

constexpr auto invalidArgument = static_cast<std::int32_t>(0x80070057);
constexpr std::size_t payloadLimit = 5'120; // bytes; a payload is shorter

std::wstring NewId()
{
    GUID id{};
    if (FAILED(CoCreateGuid(&id)))
    {
        throw Error(L"the system gives no new ids");
    }
    wchar_t text[39];
    StringFromGUID2(id, text, ARRAYSIZE(text));
    return std::wstring(text + 1, 36); // without its braces
}

std::vector<std::wstring> DetailsOf(RegisteredTask const& task)
{
    return {Detail(L"name", task.name), Detail(L"id", task.id)};
}

} // namespace

BackgroundTasks::BackgroundTasks(std::wstring file, Journal& journal, Clock const& clock, TaskInstances& instances)
    : m_registry({std::move(file), journal}), m_journal(journal), m_clock(clock), m_instances(instances)
{
}

TaskRegistered BackgroundTasks::Register(RegisterTask const& request)
{
    auto const isTimer = request.trigger == Trigger::Timer;
    if (isTimer && request.minutes < TaskRegistry::shortestPeriod)
    {
        return {invalidArgument, {}};
    }
    // The platform leaves itself up to fifteen minutes more for the first run; here it comes when the period is over.
    auto const due = isTimer ? m_clock.Now() + request.minutes * Clock::minute : 0;
    RegisteredTask const task{NewId(), request.name, request.trigger, request.minutes, request.once, due};
    // cppcheck-suppress danglingTemporaryLifetime; the task has the id itself
    m_registry.Add(task);
    auto details = DetailsOf(task);
    details.push_back(Detail(L"trigger", NameOf(task.trigger)));
    if (isTimer)
    {
        details.push_back(Detail(L"minutes", std::to_wstring(task.minutes)));
        details.push_back(Detail(L"once", task.once ? L"yes" : L"no"));
    }
    m_journal.Add(L"task-registered", std::move(details));
    return {0, task.id};
}

void BackgroundTasks::Unregister(UnregisterTask const& request)
{
    for (auto const& task : m_registry.All())
    {
        if (task.id == request.id)
        {
            auto const details = DetailsOf(task);
            m_registry.Remove(request.id);
            m_journal.Add(L"task-unregistered", details);
            break;
        }
    }
    std::erase_if(m_pushes, [&](auto const& push) { return push.task.id == request.id; });
    if (request.cancel)
    {
        m_instances.CancelTask(request.id, CancellationReason::abort);
    }
}

void BackgroundTasks::Clear()
{
    m_pushes.clear();
    m_registry.Clear();
}

std::wstring BackgroundTasks::Push(PushChannel const& channel, std::wstring const& payload)
{
    if (ToUtf8(payload).size() >= payloadLimit)
    {
        throw Error(L"the push service refuses a payload of " + std::to_wstring(payloadLimit) + L" bytes or more");
    }
    if (!channel.IsLive())
    {
        m_journal.Add(L"push-lost", {Detail(L"reason", L"no-channel")});
        return L"lost: the app has no open channel";
    }
    m_journal.Add(L"push-sent");
    auto const before = m_pushes.size();
    for (auto const& task : m_registry.All())
    {
        if (task.trigger == Trigger::Push)
        {
            m_pushes.push_back({task, payload});
        }
    }
    if (m_pushes.size() == before)
    {
        m_journal.Add(L"push-lost", {Detail(L"reason", L"no-task")});
        return L"lost: the app has no task that a push triggers";
    }
    StartNextPush();
    return L"sent";
}

void BackgroundTasks::RunDue()
{
    auto const now = m_clock.Now();
    auto const tasks = m_registry.All(); // what ran once goes meanwhile
    for (auto const& task : tasks)
    {
        if (task.trigger != Trigger::Timer || task.due > now)
        {
            continue;
        }
        auto const period = task.minutes * Clock::minute;
        auto const missed = (now - task.due) / period;
        task.once ? m_registry.Remove(task.id) : m_registry.SetDue(task.id, task.due + (missed + 1) * period);
        Start(task, L"");
    }
}

std::wstring BackgroundTasks::Text() const
{
    std::wstring text;
    for (auto const& task : m_registry.All())
    {
        text += L"\n  " + task.name + L", ";
        text += task.trigger == Trigger::Push
                    ? L"by a push"
                    : L"every " + std::to_wstring(task.minutes) + L" minutes, next " + Clock::Text(task.due);
        text += L", " + task.id;
    }
    return text;
}

void BackgroundTasks::InstanceEnded(std::uint32_t instance)
{
    if (m_runningPush == instance)
    {
        m_runningPush.reset();
        StartNextPush();
    }
}

std::optional<std::uint32_t> BackgroundTasks::Start(RegisteredTask const& task, std::wstring const& payload)
{
    return m_instances.Start(
        TaskStart{.taskId = task.id, .task = task.name, .trigger = task.trigger, .payload = payload});
}

void BackgroundTasks::StartNextPush()
{
    while (!m_runningPush && !m_pushes.empty())
    {
        auto const push = std::move(m_pushes.front());
        m_pushes.pop_front();
        m_runningPush = Start(push.task, push.payload);
    }
}

} // namespace sim
