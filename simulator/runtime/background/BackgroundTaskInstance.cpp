#include "simulator/runtime/background/BackgroundTaskInstance.h"

#include "simulator/runtime/BufferedEvent.h"
#include "simulator/runtime/Deferral.h"
#include "simulator/runtime/Record.h"
#include "simulator/runtime/appservice/AppServiceConnection.h"
#include "simulator/runtime/background/BackgroundTaskRegistration.h"

#include <winrt/Windows.Networking.PushNotifications.h>

namespace sim
{

namespace
{

using AppModel::Background::BackgroundTaskCancellationReason;

// The trigger details of a push.
using RawNotification =
    Record<Pushes::RawNotification, Interfaces<Pushes::IRawNotification>, Property<"Content", winrt::hstring>>;

// The trigger details of a new connection. CallerPackageFamilyName: empty for a caller without a package.
using AppServiceTriggerDetails =
    Record<AppService::AppServiceTriggerDetails,
           Interfaces<AppService::IAppServiceTriggerDetails, AppService::IAppServiceTriggerDetails2,
                      AppService::IAppServiceTriggerDetails3, AppService::IAppServiceTriggerDetails4>,
           Property<"Name", winrt::hstring>, Property<"CallerPackageFamilyName", winrt::hstring>,
           Property<"AppServiceConnection", AppService::AppServiceConnection>,
           Property<"IsRemoteSystemConnection", bool>>;

// An instance of a background task.
struct BackgroundTaskInstance : Implements<BackgroundTaskInstance, Background::IBackgroundTaskInstance,
                                           Background::IBackgroundTaskInstance2, Background::IBackgroundTaskInstance4>
{
    using Registration = Background::BackgroundTaskRegistration;
    using CanceledHandler = Background::BackgroundTaskCanceledEventHandler;

    BackgroundTaskInstance(std::uint32_t number, Registration task, IInspectable triggerDetails)
        : m_number(number),
          m_end(std::make_shared<DeferralCounter>([host = m_host, number] { host.Tell(TaskCompleted{number}); })),
          m_task(std::move(task)), m_triggerDetails(std::move(triggerDetails))
    {
    }

    // OnBackgroundActivated has returned.
    void Returned()
    {
        m_host.Tell(TaskReturned{m_number});
        m_end->Finish();
    }

    // The device's number for it: how the platform makes ids is unknown.
    winrt::guid InstanceId() const noexcept { return {m_number, 0, 0, {}}; }

    Registration Task() const { return InjectFault(L"BackgroundTaskInstance.Task") ? Registration(nullptr) : m_task; }

    IInspectable TriggerDetails() const
    {
        return InjectFault(L"BackgroundTaskInstance.TriggerDetails") ? nullptr : m_triggerDetails;
    }

    // Released without being completed, it keeps the task running until the platform's limit.
    Background::BackgroundTaskDeferral GetDeferral() const
    {
        if (InjectFault(L"BackgroundTaskInstance.GetDeferral"))
        {
            return nullptr;
        }
        return TakeDeferral<Background::BackgroundTaskDeferral>(m_end);
    }

    winrt::event_token Canceled(CanceledHandler const& handler)
    {
        InjectFault(L"BackgroundTaskInstance.Canceled");
        return m_canceled.Add(handler, *this);
    }

    void Canceled(winrt::event_token token) { m_canceled.Remove(token); }

    // A completion may cross the cancellation: Canceled is raised all the same.
    void Receive(MessageRouter::Message const& message)
    {
        if (auto const* const cancelled = std::get_if<TaskCancelled>(&message))
        {
            auto const reason = static_cast<BackgroundTaskCancellationReason>(cancelled->reason);
            m_canceled.RaiseOrWait(*this, [reason](BackgroundTaskInstance& self) {
                self.m_canceled.Call(self.get_strong().as<Background::IBackgroundTaskInstance>(), reason);
            });
        }
        else if (auto const host = m_host.Get()) // it has ended
        {
            host->Router().RemoveReceiver({Address::Kind::Instance, m_number});
        }
    }

  private:
    std::uint32_t m_number;
    HostReference m_host;
    std::shared_ptr<DeferralCounter> m_end;
    Registration m_task;
    IInspectable m_triggerDetails;
    BufferedEvent<BackgroundTaskInstance, CanceledHandler> m_canceled;
};

IInspectable DetailsOf(ServiceStart const& start)
{
    return winrt::make<AppServiceTriggerDetails>(winrt::hstring(start.service), winrt::hstring(start.callerFamily),
                                                 MakeServiceEnd(start.connection, start.service), false);
}

IInspectable DetailsOf(TaskStart const& start)
{
    return start.trigger == Trigger::Push
               ? winrt::make<RawNotification>(winrt::hstring(start.payload)).as<IInspectable>()
               : nullptr;
}

void Run(std::uint32_t number, Background::BackgroundTaskRegistration const& task, IInspectable const& triggerDetails,
         ActivateInBackground const& activate)
{
    auto const instance = winrt::make_self<BackgroundTaskInstance>(number, task, triggerDetails);
    CurrentHost().Router().AddReceiver({Address::Kind::Instance, number},
                                       [instance](auto const& message) { instance->Receive(message); });
    activate(*instance);
    instance->Returned();
}

} // namespace

void RunTask(ServiceStart const& start, ActivateInBackground const& activate)
{
    Run(start.instance, MakeRegistration(L"", start.service), DetailsOf(start), activate);
}

void RunTask(TaskStart const& start, ActivateInBackground const& activate)
{
    Run(start.instance, MakeRegistration(start.taskId, start.task), DetailsOf(start), activate);
}

} // namespace sim
