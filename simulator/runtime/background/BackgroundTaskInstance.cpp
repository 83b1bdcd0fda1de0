#include "simulator/runtime/background/BackgroundTaskInstance.h"

#include "simulator/model/Text.h"
#include "simulator/runtime/Address.h"
#include "simulator/runtime/Answers.h"
#include "simulator/runtime/appservice/AppServiceConnection.h"
#include "simulator/runtime/appservice/AppServiceTriggerDetails.h"
#include "simulator/runtime/background/BackgroundTaskDeferral.h"
#include "simulator/runtime/background/BackgroundTaskRegistration.h"
#include "simulator/runtime/push/RawNotification.h"

namespace sim
{

using Platform::Background::BackgroundTaskCancellationReason;

namespace
{

// What an activation carries; see ActivationKind.
enum InAppService
{
    ServiceConnection = 1,
    ServiceName,
    CallerFamily
};

enum InTask
{
    TaskId = 1,
    TaskName,
    Trigger,
    Payload
};

IInspectable ServiceDetails(std::vector<std::wstring> const& more)
{
    auto const connection = AppServiceConnection::OfService(more[ServiceConnection], more[ServiceName]);
    return winrt::make<AppServiceTriggerDetails>(more[ServiceName], more[CallerFamily],
                                                 connection.as<AppServiceConnection::class_type>());
}

IInspectable TaskDetails(std::vector<std::wstring> const& more)
{
    return more[Trigger] == L"push" ? winrt::make<RawNotification>(more[Payload]).as<IInspectable>() : nullptr;
}

} // namespace

winrt::com_ptr<BackgroundTaskInstance> BackgroundTaskInstance::Start(Activation const& activation)
{
    auto const& more = activation.more;
    auto const isService = activation.kind == ActivationKind::AppService;
    auto const task = isService ? winrt::make<BackgroundTaskRegistration>(L"", more[ServiceName])
                                : winrt::make<BackgroundTaskRegistration>(more[TaskId], more[TaskName]);
    auto instance =
        winrt::make_self<BackgroundTaskInstance>(more[0], task, isService ? ServiceDetails(more) : TaskDetails(more));
    Receivers::Instance().Add(InstanceAddress(more[0]),
                              [instance](auto const& message) { instance->Receive(message); });
    return instance;
}

BackgroundTaskInstance::BackgroundTaskInstance(std::wstring id, Registration task, IInspectable triggerDetails)
    : m_id(std::move(id)),
      m_end(std::make_shared<PendingEnd>([host = m_host, id = m_id] { host.Tell({L"task-completed", id}); })),
      m_task(std::move(task)), m_triggerDetails(std::move(triggerDetails))
{
}

void BackgroundTaskInstance::Returned()
{
    m_host.Tell({L"task-returned", m_id});
    m_end->Finish();
}

// Its own is not known here: the device's number for it.
winrt::guid BackgroundTaskInstance::InstanceId() const noexcept
{
    return {ParseNumber(m_id).value_or(0), 0, 0, {}};
}

BackgroundTaskInstance::Registration BackgroundTaskInstance::Task() const
{
    return StruckByNull(L"BackgroundTaskInstance.Task") ? Registration(nullptr) : m_task;
}

IInspectable BackgroundTaskInstance::TriggerDetails() const
{
    return StruckByNull(L"BackgroundTaskInstance.TriggerDetails") ? nullptr : m_triggerDetails;
}

Platform::Background::BackgroundTaskDeferral BackgroundTaskInstance::GetDeferral() const
{
    return StruckByNull(L"BackgroundTaskInstance.GetDeferral") ? Platform::Background::BackgroundTaskDeferral(nullptr)
                                                               : winrt::make<BackgroundTaskDeferral>(m_end);
}

winrt::event_token BackgroundTaskInstance::Canceled(CanceledHandler const& handler)
{
    ThrowIfStruck(L"BackgroundTaskInstance.Canceled");
    return m_canceled.Add(handler, *this);
}

void BackgroundTaskInstance::Canceled(winrt::event_token token)
{
    m_canceled.Remove(token);
}

// cancel INSTANCE CONNECTION REASON, which a completion may cross: Canceled is raised all the same. Then ended INSTANCE
// CONNECTION.
void BackgroundTaskInstance::Receive(Message const& message)
{
    if (message.front() == L"ended")
    {
        Receivers::Instance().Remove(InstanceAddress(m_id));
        return;
    }
    auto const reason = static_cast<BackgroundTaskCancellationReason>(std::stoi(WordOf(message, 3)));
    m_canceled.RaiseOrWait(*this, [reason](BackgroundTaskInstance& self) {
        self.m_canceled.Call(self.get_strong().as<Platform::Background::IBackgroundTaskInstance>(), reason);
    });
}

} // namespace sim
