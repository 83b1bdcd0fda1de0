#include "simulator/services/BackgroundTasks.h"

#include "simulator/model/Error.h"
#include "simulator/model/Event.h"
#include "simulator/model/Text.h"
#include "simulator/services/CancellationReason.h"

#include <combaseapi.h>

namespace sim
{

namespace
{

constexpr auto invalidArgument = static_cast<std::int32_t>(0x80070057);
constexpr unsigned shortestPeriod = 15;     // minutes
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

BackgroundTasks::BackgroundTasks(std::wstring file, Outside const& outside, VirtualClock const& clock,
                                 TaskInstances& instances)
    : m_registry(std::move(file)), m_outside(outside), m_clock(clock), m_instances(instances)
{
}

BackgroundTasks::Registration BackgroundTasks::Register(std::wstring const& name, std::wstring const& trigger,
                                                        unsigned minutes, bool once)
{
    auto const isTimer = trigger == RegisteredTask::timer;
    if (isTimer && minutes < shortestPeriod)
    {
        return {invalidArgument, {}};
    }
    // The platform leaves itself up to fifteen minutes more for the first run; here it comes when the period is over.
    auto const due = isTimer ? m_clock.Now() + minutes * VirtualClock::minute : 0;
    RegisteredTask const task{NewId(), name, trigger, minutes, once, due};
    // cppcheck-suppress danglingTemporaryLifetime; the task has the id itself
    m_registry.Add(task);
    auto details = DetailsOf(task);
    details.push_back(Detail(L"trigger", trigger));
    if (isTimer)
    {
        details.push_back(Detail(L"minutes", std::to_wstring(minutes)));
        details.push_back(Detail(L"once", once ? L"yes" : L"no"));
    }
    m_outside.report(L"task-registered", std::move(details));
    return {0, task.id};
}

void BackgroundTasks::Unregister(std::wstring const& id, bool cancel)
{
    for (auto const& task : m_registry.All())
    {
        if (task.id == id)
        {
            auto const details = DetailsOf(task);
            m_registry.Remove(id);
            m_outside.report(L"task-unregistered", details);
            break;
        }
    }
    std::erase_if(m_pushes, [&](auto const& push) { return push.task.id == id; });
    if (cancel)
    {
        m_instances.CancelTask(id, CancellationReason::abort);
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
        m_outside.report(L"push-lost", {Detail(L"reason", L"no-channel")});
        return L"lost: the app has no open channel";
    }
    m_outside.report(L"push-sent", {});
    auto const before = m_pushes.size();
    for (auto const& task : m_registry.All())
    {
        if (task.trigger == RegisteredTask::push)
        {
            m_pushes.push_back({task, payload});
        }
    }
    if (m_pushes.size() == before)
    {
        m_outside.report(L"push-lost", {Detail(L"reason", L"no-task")});
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
        if (task.trigger != RegisteredTask::timer || task.due > now)
        {
            continue;
        }
        auto const period = task.minutes * VirtualClock::minute;
        auto const missed = (now - task.due) / period;
        task.once ? m_registry.Remove(task.id) : m_registry.SetDue(task.id, task.due + (missed + 1) * period);
        Start(task, L"", [](TaskInstances::End) {});
    }
}

std::wstring BackgroundTasks::Text() const
{
    std::wstring text;
    for (auto const& task : m_registry.All())
    {
        text += L"\n  " + task.name + L", ";
        text += task.trigger == RegisteredTask::push
                    ? L"by a push"
                    : L"every " + std::to_wstring(task.minutes) + L" minutes, next " + VirtualClock::Text(task.due);
        text += L", " + task.id;
    }
    return text;
}

void BackgroundTasks::Start(RegisteredTask const& task, std::wstring const& payload,
                            std::function<void(TaskInstances::End)> ended)
{
    m_instances.Add({ActivationKind::BackgroundTask,
                     task.name,
                     task.id,
                     {task.id, task.name, task.trigger, payload},
                     {},
                     std::move(ended)});
}

void BackgroundTasks::StartNextPush()
{
    if (m_isPushRunning || m_pushes.empty())
    {
        return;
    }
    auto const push = std::move(m_pushes.front());
    m_pushes.pop_front();
    m_isPushRunning = true;
    Start(push.task, push.payload, [this](TaskInstances::End) {
        m_isPushRunning = false;
        StartNextPush();
    });
}

} // namespace sim
