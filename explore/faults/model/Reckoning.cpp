#include "explore/faults/model/Reckoning.h"

#include "explore/faults/model/Line.h"
#include "explore/faults/model/Rules.h"

#include <algorithm>
#include <utility>

namespace explore::faults
{

namespace
{

using Kind = Step::Kind;

constexpr std::int32_t nullPointer = static_cast<std::int32_t>(0x80004003);
constexpr std::int32_t invalidArgument = static_cast<std::int32_t>(0x80070057);

constexpr std::wstring_view ownTasks[] = {L"PushNotificationBGTask", L"URITimerBGTask"};

// The calls on a class itself, each through an interface of its own: the first one of a process takes that of the
// class's factory.
constexpr std::wstring_view onClasses[] = {
    L"Application.Start",
    L"Application.CreateInstance",
    L"ApplicationData.Current",
    L"BackgroundTaskBuilder.ActivateInstance",
    L"BackgroundTaskRegistration.AllTasks",
    L"CoreApplication.Exit",
    L"FullTrustProcessLauncher.LaunchFullTrustProcessForCurrentAppAsync",
    L"PropertyValue.CreateString",
    L"PushNotificationChannelManager.CreatePushNotificationChannelForApplicationAsync",
    L"PushNotificationTrigger.ActivateInstance",
    L"TimeTrigger.Create",
    L"ValueSet.ActivateInstance",
    L"Window.Current",
};

bool Contains(auto const& range, std::wstring_view text)
{
    return std::ranges::find(range, text) != std::ranges::end(range);
}

std::wstring Replaced(std::wstring text, std::wstring_view what, std::wstring_view by)
{
    if (auto const place = text.find(what); place != std::wstring::npos)
    {
        text.replace(place, what.size(), by);
    }
    return text;
}

std::wstring Joined(Texts const& entries)
{
    std::wstring text;
    for (auto const& entry : entries)
    {
        text += (text.empty() ? L"" : L" ") + entry;
    }
    return text;
}

// The call gives null by itself: nothing is stored.
bool IsMissing(std::wstring_view call, std::wstring_view uri)
{
    return call == L"ApplicationDataContainerSettings.Lookup" && uri.empty();
}

// The operation does what it is for.
bool HasEffect(Way way)
{
    return way.kind != Way::Kind::Completion && way.kind != Way::Kind::Cancelled && way.kind != Way::Kind::Never &&
           way.kind != Way::Kind::Status;
}

// What a failure of steps that are no event's handler makes of the process.
End EndAfterFailure(Role role)
{
    if (role == Role::Start)
    {
        return End::NotStarted;
    }
    return role == Role::Override ? End::Failed : End::Terminated;
}

} // namespace

Reckoning::Reckoning(Scene scene, std::vector<WayAt> deviations)
    : m_scene(std::move(scene)), m_deviations(std::move(deviations)), m_requests(m_scene.requests),
      m_hasDeferral(m_scene.isConnected)
{
}

void Reckoning::Run(Steps const& steps, Role role, Steps const& second)
{
    m_second = second.empty() ? nullptr : &second;
    try
    {
        Guarded(steps, role);
        if (m_later && m_outcome.end == End::Alive)
        {
            LoseConnection(*m_later);
        }
        ContinueAll();
    }
    catch (ProcessEnd const&)
    {
        // Ignored: nothing more happens.
    }
    FillOutcome();
}

void Reckoning::FillOutcome()
{
    m_outcome.tasks = m_scene.tasks;
    m_outcome.uri = m_scene.uri;
    for (auto const& request : m_requests)
    {
        auto const isDone = request.completions > 0 || (!request.isDeferred && !request.isUnheard);
        auto const isGiven = request.isLost || isDone || m_outcome.end != End::Alive;
        // A response comes with the request's end.
        m_outcome.answers.push_back({isGiven, request.completions > 0 ? request.response : std::wstring()});
    }
    for (auto const request : m_deferred)
    {
        m_outcome.completions.push_back(m_requests[request].completions);
    }
}

// Under what a failure leads to.
void Reckoning::Guarded(Steps const& steps, Role role)
try
{
    Play(steps);
}
catch (Failure const& failure)
{
    if (role != Role::Handler)
    {
        m_outcome.end = EndAfterFailure(role);
        m_outcome.code = failure.code;
    }
    if (role == Role::Continuation)
    {
        throw ProcessEnd();
    }
    // The platform takes such a handler for one of a process that is gone, and does not call it again.
    if (role == Role::Handler && failure.code == Results::disconnected && m_second && m_scene.helpers == 1)
    {
        m_second = nullptr;
        m_requests[1].isUnheard = true;
    }
}

void Reckoning::Play(Steps const& steps)
{
    for (auto const& step : steps)
    {
        Play(step);
    }
}

void Reckoning::Play(Step const& step)
{
    switch (step.kind)
    {
    case Kind::Shell:
    case Kind::Info:
    case Kind::Error:
        Say(step);
        break;
    case Kind::Call:
    case Kind::Dropped:
    case Kind::Optional: {
        auto const way = Take(step.text);
        m_isNull = way.kind == Way::Kind::Null || IsMissing(step.text, m_scene.uri);
        if (step.kind == Kind::Call && m_isNull)
        {
            throw Failure{nullPointer};
        }
        Effect(step, m_isNull);
        Play(m_isNull ? step.otherwise : step.body);
        break;
    }
    case Kind::Guard:
        PlayGuarded(step);
        break;
    case Kind::Operation:
        PlayOperation(step);
        break;
    case Kind::Fail:
        throw Failure{nullPointer};
    case Kind::Result:
        Require(m_operationFailure == 0, m_operationFailure);
        break;
    case Kind::Connected:
        Require(m_scene.isConnected, nullPointer);
        break;
    case Kind::IfConnected:
        Play(m_scene.isConnected ? step.body : step.otherwise);
        break;
    case Kind::TakeDeferral:
        m_hasDeferral = true;
        break;
    case Kind::TaskReturned:
        m_outcome.tasksEnded += m_hasDeferral ? 0 : 1;
        break;
    case Kind::IfDeferral:
        Play(m_hasDeferral ? step.body : step.otherwise);
        break;
    case Kind::EachTask:
        PlayEachTask(step);
        break;
    case Kind::IfOwnTask:
        Play(Contains(ownTasks, m_scene.tasks[m_task]) ? step.body : step.otherwise);
        break;
    case Kind::IfTask:
        Play(m_scene.activation == step.text ? step.body : step.otherwise);
        break;
    case Kind::IfService:
        Play(m_scene.activation.empty() && !m_isNull ? step.body : step.otherwise);
        break;
    case Kind::Scope:
        PlayScope(step);
        break;
    case Kind::End:
        throw EndOfScope();
    case Kind::Signal:
        m_isSignalled = true;
        break;
    case Kind::Wait:
        PlayWait(step);
        break;
    case Kind::Sleep:
        m_outcome.waits.emplace_back(L"3000");
        ContinueAll();
        break;
    }
}

void Reckoning::Require(bool isMet, std::int32_t code)
{
    if (!isMet)
    {
        throw Failure{code};
    }
}

void Reckoning::PlayGuarded(Step const& step)
try
{
    Play(step.body);
}
catch (Failure const&)
{
    Play(step.otherwise);
}

void Reckoning::PlayScope(Step const& step)
try
{
    Play(step.body);
}
catch (EndOfScope const&)
{
    // Ignored: the rest of the scope is left out.
}

void Reckoning::PlayWait(Step const& step)
{
    m_outcome.waits.emplace_back(L"60000");
    auto const request = m_request;
    ContinueAll();
    m_request = request;
    Play(m_isSignalled ? step.body : step.otherwise);
}

// The map was taken at the beginning: what is removed from the device meanwhile is still in it.
void Reckoning::PlayEachTask(Step const& step)
{
    auto const all = m_scene.tasks;
    auto const current = [&] { Take(L"BackgroundTaskRegistration.AllTasks.HasCurrent"); };
    current();
    for (auto const& task : all)
    {
        m_task = static_cast<std::size_t>(std::ranges::find(m_scene.tasks, task) - m_scene.tasks.begin());
        Play(step.body);
        Take(L"BackgroundTaskRegistration.AllTasks.MoveNext");
    }
}

void Reckoning::PlayOperation(Step const& step)
{
    auto const way = Take(step.text);
    if (way.kind == Way::Kind::Null)
    {
        throw Failure{nullPointer};
    }
    if (step.text == L"AppServiceConnection.SendMessageAsync" && !m_scene.isConnected)
    {
        throw Failure{Results::closed};
    }
    if (HasEffect(way))
    {
        Effect(step, false);
    }
    if (way.kind == Way::Kind::Unheard)
    {
        throw Failure{way.code};
    }
    Start(step, way);
}

void Reckoning::Start(Step const& step, Way way)
{
    auto const isCancelled = way.kind == Way::Kind::Cancelled;
    auto const hasFailed = isCancelled || way.kind == Way::Kind::Completion;
    if (way.kind == Way::Kind::Never || (isCancelled && step.ends != Step::Ends::All) ||
        (hasFailed && step.ends == Step::Ends::Successful))
    {
        return;
    }
    Continuation const continuation{m_request, &step.body, way.kind == Way::Kind::Completion ? way.code : 0,
                                    hasFailed || way.kind == Way::Kind::Status || way.kind == Way::Kind::Ended};
    if (continuation.isAside || step.text.starts_with(L"PushNotification") ||
        step.text.starts_with(L"AppServiceRequest"))
    {
        m_ready.push_back(continuation);
    }
    else
    {
        (step.text.starts_with(L"FullTrust") ? m_launches : m_sends).push_back(continuation);
    }
}

void Reckoning::ContinueAll()
{
    for (auto* queue : {&m_ready, &m_launches, &m_sends})
    {
        if (queue != &m_ready && m_second)
        {
            PlaySecond();
            ContinueAll();
            return;
        }
        if (!queue->empty())
        {
            auto const next = queue->front();
            queue->pop_front();
            Continue(next);
            ContinueAll();
            return;
        }
    }
}

void Reckoning::PlaySecond()
{
    m_request = 1;
    Guarded(*std::exchange(m_second, nullptr), Role::Handler);
}

void Reckoning::Continue(Continuation const& continuation)
{
    m_request = continuation.request;
    m_operationFailure = continuation.failure;
    continuation.isAside ? PlayAside(*continuation.steps, Role::Continuation)
                         : Guarded(*continuation.steps, Role::Continuation);
}

void Reckoning::PlayAside(Steps const& steps, Role role)
{
    m_aside.emplace_back();
    auto const wasAside = std::exchange(m_isAside, true);
    Guarded(steps, role);
    m_isAside = wasAside;
}

// Right before a call.
void Reckoning::Lose(Way way)
{
    if (!m_scene.activation.empty())
    {
        return; // no handler listens for the cancellation of a push or timer task
    }
    if (m_requests.empty())
    {
        m_later = way;
    }
    else
    {
        LoseConnection(way);
    }
}

void Reckoning::LoseConnection(Way way)
{
    m_second = nullptr; // what has not been asked does not come to the app any more
    LoseRequests(way);
    if (m_loss && (m_areHandlersRunning || m_scene.helpers == 1))
    {
        // Nothing is left to be released, but further handlers may run.
        auto const again = way.kind == Way::Kind::TaskCancelled ? TaskCancelled() : ConnectionClosed();
        m_loss->handlers.insert(m_loss->handlers.end(), m_scene.helpers, again);
        return;
    }
    if (!m_loss)
    {
        m_loss = Loss{m_outcome.lines.size(), m_outcome.calls.size(), {}};
    }
    auto const request = m_request;
    auto const run = [&](Steps const& steps, Role role) {
        m_loss->handlers.push_back(steps);
        m_areHandlersRunning = true;
        Guarded(steps, role);
        m_areHandlersRunning = false;
    };
    // The helpers are of one process; one alone closes.
    auto const count = way.kind == Way::Kind::HelperCloses ? 1 : m_scene.helpers;
    for (std::size_t helper = 0; helper < count; ++helper)
    {
        run(TaskCancelled(), Role::Handler);
        if (way.kind != Way::Kind::TaskCancelled)
        {
            run(ConnectionClosed(), Role::Handler);
        }
    }
    for (; !m_sends.empty(); m_sends.pop_front())
    {
        m_request = m_sends.front().request;
        run(*m_sends.front().steps, Role::Continuation);
    }
    m_request = request;
}

// A cancelled task closes the connection of the last helper, who is not the one that has made the first request where
// there are two.
void Reckoning::LoseRequests(Way way)
{
    for (std::size_t request = 0; request < m_requests.size(); ++request)
    {
        m_requests[request].isLost |= way.kind != Way::Kind::TaskCancelled || m_scene.helpers == 1 || request > 0;
    }
}

Way Reckoning::Take(std::wstring_view call)
{
    if (Contains(onClasses, call) && !m_factories.contains(call))
    {
        TakeOne(call.substr(0, call.find(L'.')));
        m_factories.emplace(call);
    }
    return TakeOne(call);
}

Way Reckoning::TakeOne(std::wstring_view call)
{
    auto const way = WayOfNext(call);
    switch (way.kind)
    {
    case Way::Kind::Now:
        if (call == L"AppServiceDeferral.Complete" && m_requests[m_request].completions > 0)
        {
            --m_requests[m_request].completions; // which it is not; its failure after a successful one is swallowed
            return {};
        }
        throw Failure{way.code};
    case Way::Kind::HelperCloses:
    case Way::Kind::HelperDies:
    case Way::Kind::TaskCancelled:
        Lose(way);
        return {};
    case Way::Kind::Killed:
        m_outcome.end = End::Killed;
        throw ProcessEnd();
    default:
        return way;
    }
}

Way Reckoning::WayOfNext(std::wstring_view call)
{
    auto const number = m_calls.size();
    m_calls.emplace_back(call);
    if (!m_areHandlersRunning)
    {
        (m_isAside ? m_aside.back().calls : m_outcome.calls).emplace_back(call);
    }
    auto const deviation = std::ranges::find(m_deviations, number, &WayAt::call);
    return deviation != m_deviations.end() && Applies(deviation->way, call) ? deviation->way : Way();
}

// What a call that succeeds changes.
void Reckoning::Effect(Step const& made, bool gaveNull)
{
    struct Row
    {
        std::wstring_view call;
        void (*change)(Reckoning&, Step const&, bool isNull);
    };
    static constexpr Row rows[] = {
        {L"PropertyValue.CreateString", [](Reckoning& self, Step const&, bool isNull) { self.m_boxIsNull = isNull; }},
        {L"ValueSet.ActivateInstance",
         [](Reckoning& self, Step const&, bool) { self.m_requests[self.m_request].message.clear(); }},
        {L"ValueSet.Insert", [](Reckoning& self, Step const& step, bool) { self.Put(step.detail); }},
        {L"AppServiceRequestReceivedEventArgs.GetDeferral",
         [](Reckoning& self, Step const&, bool) {
             self.m_requests[self.m_request].isDeferred = true;
             self.m_deferred.push_back(self.m_request);
         }},
        {L"AppServiceDeferral.Complete",
         [](Reckoning& self, Step const&, bool) { ++self.m_requests[self.m_request].completions; }},
        {L"BackgroundTaskDeferral.Complete",
         [](Reckoning& self, Step const&, bool) {
             self.m_hasDeferral = false;
             ++self.m_outcome.tasksEnded;
         }},
        {L"AppServiceTriggerDetails.AppServiceConnection",
         [](Reckoning& self, Step const&, bool) { self.m_scene.isConnected = true; }},
        {L"AppServiceConnection.Close", [](Reckoning& self, Step const&, bool) { self.m_scene.isConnected = false; }},
        {L"BackgroundTaskRegistration.Unregister",
         [](Reckoning& self, Step const&, bool) {
             self.m_scene.tasks.erase(self.m_scene.tasks.begin() + static_cast<std::ptrdiff_t>(self.m_task));
         }},
        {L"PushNotificationTrigger.ActivateInstance",
         [](Reckoning& self, Step const&, bool) { self.m_hasTrigger = true; }},
        {L"TimeTrigger.Create", [](Reckoning& self, Step const&, bool isNull) { self.m_hasTrigger = !isNull; }},
        {L"BackgroundTaskBuilder.Register",
         [](Reckoning& self, Step const& step, bool isNull) {
             if (!self.m_hasTrigger)
             {
                 throw Failure{invalidArgument};
             }
             if (!isNull)
             {
                 self.m_scene.tasks.emplace_back(step.detail);
             }
         }},
        {L"ApplicationDataContainerSettings.Insert",
         [](Reckoning& self, Step const&, bool) { self.m_scene.uri = self.m_boxIsNull ? L"" : L"{uri}"; }},
        {L"CoreApplication.Exit", [](Reckoning& self, Step const&, bool) { self.m_outcome.end = End::Exited; }},
        {L"FullTrustProcessLauncher.LaunchFullTrustProcessForCurrentAppAsync",
         [](Reckoning& self, Step const& step, bool) { self.m_outcome.launches.emplace_back(step.detail); }},
        {L"AppServiceConnection.SendMessageAsync",
         [](Reckoning& self, Step const&, bool) {
             self.m_outcome.messages.push_back(std::to_wstring(self.m_scene.helpers) + L": " +
                                               Joined(self.m_requests[self.m_request].message));
         }},
        {L"AppServiceRequest.SendResponseAsync",
         [](Reckoning& self, Step const&, bool) {
             auto& request = self.m_requests[self.m_request];
             request.response = Joined(request.message);
         }},
    };
    if (auto const* const row = std::ranges::find(rows, made.text, &Row::call); row != std::end(rows))
    {
        row->change(*this, made, gaveNull);
    }
}

// A key that is there keeps its place.
void Reckoning::Put(std::wstring_view keyAndValue)
{
    auto const key = std::wstring(keyAndValue.substr(0, keyAndValue.find(L'=') + 1));
    auto entry = Replaced(std::wstring(keyAndValue), L"{stored}", m_scene.uri);
    if (m_boxIsNull && !keyAndValue.ends_with(L"{stored}"))
    {
        entry = key + L"(null)";
    }
    auto& message = m_requests[m_request].message;
    auto const place = std::ranges::find_if(message, [&](auto const& there) { return there.starts_with(key); });
    place == message.end() ? message.push_back(entry) : static_cast<void>(*place = entry);
}

void Reckoning::Say(Step const& step)
{
    if (!m_areHandlersRunning)
    {
        (m_isAside ? m_aside.back().lines : m_outcome.lines).push_back(LineOf(step));
    }
}

} // namespace explore::faults
