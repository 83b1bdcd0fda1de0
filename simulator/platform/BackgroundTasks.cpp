#include "simulator/platform/BackgroundTasks.h"

#include "simulator/base/Error.h"
#include "simulator/base/Text.h"
#include "simulator/protocol/CancellationReason.h"

#include <algorithm>
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
        throw Error(L"cannot create a GUID");
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

BackgroundTasks::BackgroundTasks(Journal& journal, Clock const& clock, TaskInstances& instances)
    : m_registry({std::wstring(), journal}), m_journal(journal), m_clock(clock), m_instances(instances)
{
}

TaskRegistered BackgroundTasks::Register(RegisterTask const& request)
{
    auto const isTimer = request.trigger == Trigger::Timer;
    if (isTimer && request.minutes < TaskRegistry::shortestPeriod)
    {
        return {invalidArgument, {}};
    }
    // Windows may delay the first run by up to fifteen minutes; here it comes when the period is over.
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
    std::erase_if(m_waiting, [&](auto const& waiting) { return waiting.task.id == request.id; });
    if (request.cancel)
    {
        m_instances.CancelTask(request.id, CancellationReason::abort);
    }
}

void BackgroundTasks::Load(std::wstring file)
{
    m_waiting.clear();
    m_registry = TaskRegistry({std::move(file), m_journal});
}

std::wstring BackgroundTasks::Push(PushChannel const& channel, sim::Push const& push)
{
    auto const size = ToUtf8(push.payload).size();
    if (size >= payloadLimit)
    {
        throw Error(L"the push service refuses a payload of " + std::to_wstring(payloadLimit) + L" bytes or more");
    }
    if (auto const refusal = push.uri ? channel.RefusalOf(*push.uri) : std::nullopt)
    {
        auto const status = std::to_wstring(refusal->status);
        m_journal.Add(L"push-refused", {Detail(L"status", status)});
        return L"the push service answers " + status + L" " + std::wstring(refusal->meaning);
    }
    if (!channel.IsOpen())
    {
        return DropPush(L"no-channel", L"the app has no open channel");
    }
    for (auto const condition : m_conditions)
    {
        if (auto const& traits = TraitsOf(condition); !traits.losesPushes.empty())
        {
            return DropPush(traits.losesPushes, traits.text);
        }
    }
    auto const wake = ++m_lastWake;
    m_journal.Add(L"push-sent", WithWake({Detail(L"bytes", std::to_wstring(size))}, wake));
    auto const before = m_waiting.size();
    for (auto const& task : m_registry.All())
    {
        if (task.trigger == Trigger::Push)
        {
            m_waiting.push_back({task, push.payload, wake});
        }
    }
    if (m_waiting.size() == before)
    {
        return DropPush(L"no-task", L"the app has no task that a push triggers");
    }
    auto const waits = WaitsFor();
    StartNext();
    return waits.empty() ? L"sent" : L"sent; it waits: " + waits;
}

std::wstring BackgroundTasks::DropPush(std::wstring_view reason, std::wstring_view text)
{
    m_journal.Add(L"push-lost", {Detail(L"reason", reason)});
    return L"lost: " + std::wstring(text);
}

void BackgroundTasks::RunDue()
{
    if (!HeldBackBy().empty())
    {
        return; // timers stay due
    }
    auto const now = m_clock.Now();
    auto const tasks = m_registry.All(); // a copy: one-time tasks are removed below
    for (auto const& task : tasks)
    {
        if (task.trigger != Trigger::Timer || task.due > now)
        {
            continue;
        }
        auto const period = task.minutes * Clock::minute;
        auto const missed = (now - task.due) / period;
        task.once ? m_registry.Remove(task.id) : m_registry.SetDue(task.id, task.due + (missed + 1) * period);
        m_waiting.push_back({task, L"", ++m_lastWake});
        StartNext();
    }
}

void BackgroundTasks::Set(SetCondition const& request)
{
    auto const& traits = TraitsOf(request.condition);
    if (request.holds == Holds(request.condition))
    {
        return;
    }
    request.holds ? static_cast<void>(m_conditions.insert(request.condition))
                  : static_cast<void>(m_conditions.erase(request.condition));
    m_journal.Add(L"condition", {Detail(traits.name, request.holds ? traits.holds : traits.ends)});
    if (request.holds && traits.cancels)
    {
        m_instances.Cancel(m_running.instance, *traits.cancels);
    }
    if (traits.holdsTasksBack)
    {
        StartNext();
        RunDue();
    }
}

WakeState BackgroundTasks::State() const
{
    WakeState state;
    for (auto const& task : m_registry.All())
    {
        state.registered.push_back({task.name, task.trigger, task.due});
    }
    for (auto const& waiting : m_waiting)
    {
        state.waiting.push_back({waiting.wake, waiting.task.name, WaitsFor()});
    }
    state.conditions.assign(m_conditions.begin(), m_conditions.end());
    return state;
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

std::wstring BackgroundTasks::WaitingText() const
{
    std::wstring text;
    for (auto const& waiting : m_waiting)
    {
        text += L"\n  wake " + std::to_wstring(waiting.wake) + L", " + waiting.task.name + L": " + WaitsFor();
    }
    return text.empty() ? text : L"\nwaiting:" + text;
}

std::wstring BackgroundTasks::ConditionText() const
{
    std::wstring text;
    for (auto const condition : m_conditions)
    {
        auto const& traits = TraitsOf(condition);
        text += L"\ncondition " + std::wstring(traits.name) + L" " + std::wstring(traits.holds);
    }
    return text;
}

void BackgroundTasks::InstanceEnded(std::uint32_t instance)
{
    if (m_running.instance == instance)
    {
        m_running = {};
        StartNext();
    }
}

void BackgroundTasks::StartNext()
{
    while (!m_waiting.empty() && WaitsFor().empty())
    {
        auto const [task, payload, wake] = std::move(m_waiting.front());
        m_waiting.pop_front();
        auto const instance = m_instances.Start(
            TaskStart{.taskId = task.id, .task = task.name, .trigger = task.trigger, .payload = payload, .wake = wake});
        m_running = instance ? Running{*instance, wake} : Running();
    }
}

std::wstring_view BackgroundTasks::TextOf(bool ConditionTraits::* trait) const
{
    auto const found =
        std::ranges::find_if(m_conditions, [&](auto const condition) { return TraitsOf(condition).*trait; });
    return found == m_conditions.end() ? std::wstring_view() : TraitsOf(*found).text;
}

std::wstring BackgroundTasks::WaitsFor() const
{
    return m_running.instance != 0 ? L"instance " + std::to_wstring(m_running.instance) + L" runs"
                                   : std::wstring(HeldBackBy());
}

} // namespace sim
