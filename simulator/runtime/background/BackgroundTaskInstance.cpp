#include "simulator/runtime/background/BackgroundTaskInstance.h"

#include "simulator/runtime/Record.h"
#include "simulator/runtime/appservice/AppServiceConnection.h"
#include "simulator/runtime/background/BackgroundTaskRegistration.h"

#include <winrt/Windows.Networking.PushNotifications.h>

namespace sim
{

using AppModel::Background::BackgroundTaskCancellationReason;

namespace
{

// What a push carries.
using RawNotification =
    Record<Pushes::RawNotification, Interfaces<Pushes::IRawNotification>, Property<"Content", winrt::hstring>>;

// What an app gets that is activated for a new connection. CallerPackageFamilyName: empty for a caller without a
// package.
using AppServiceTriggerDetails =
    Record<AppService::AppServiceTriggerDetails,
           Interfaces<AppService::IAppServiceTriggerDetails, AppService::IAppServiceTriggerDetails2,
                      AppService::IAppServiceTriggerDetails3, AppService::IAppServiceTriggerDetails4>,
           Property<"Name", winrt::hstring>, Property<"CallerPackageFamilyName", winrt::hstring>,
           Property<"AppServiceConnection", AppService::AppServiceConnection>,
           Property<"IsRemoteSystemConnection", bool>>;

// Keeps a task running until it is completed. Released without that, it keeps it running until the platform's limit.
struct BackgroundTaskDeferral : winrt::implements<BackgroundTaskDeferral, Background::IBackgroundTaskDeferral>
{
    using class_type = Background::BackgroundTaskDeferral;

    explicit BackgroundTaskDeferral(std::shared_ptr<DeferralCounter> task) : m_task(std::move(task)) { m_task->Take(); }

    // Once is enough; more does nothing.
    void Complete()
    {
        ThrowIfStruck(L"BackgroundTaskDeferral.Complete");
        if (!m_isCompleted.exchange(true))
        {
            m_task->Finish();
        }
    }

  private:
    std::shared_ptr<DeferralCounter> m_task;
    std::atomic<bool> m_isCompleted = false;
};

IInspectable DetailsOf(ServiceStart const& start)
{
    auto const connection = AppServiceConnection::OfService(start.connection, start.service);
    return winrt::make<AppServiceTriggerDetails>(winrt::hstring(start.service), winrt::hstring(start.callerFamily),
                                                 connection.as<AppServiceConnection::class_type>(), false);
}

IInspectable DetailsOf(TaskStart const& start)
{
    return start.trigger == Trigger::Push
               ? winrt::make<RawNotification>(winrt::hstring(start.payload)).as<IInspectable>()
               : nullptr;
}

} // namespace

winrt::com_ptr<BackgroundTaskInstance> BackgroundTaskInstance::Start(ServiceStart const& start)
{
    return Start(start.instance, winrt::make<BackgroundTaskRegistration>(L"", start.service), DetailsOf(start));
}

winrt::com_ptr<BackgroundTaskInstance> BackgroundTaskInstance::Start(TaskStart const& start)
{
    return Start(start.instance, winrt::make<BackgroundTaskRegistration>(start.taskId, start.task), DetailsOf(start));
}

winrt::com_ptr<BackgroundTaskInstance> BackgroundTaskInstance::Start(std::uint32_t number, Registration const& task,
                                                                     IInspectable const& triggerDetails)
{
    auto instance = winrt::make_self<BackgroundTaskInstance>(number, task, triggerDetails);
    CurrentHost().Router().AddReceiver({Address::Kind::Instance, number},
                                       [instance](auto const& message) { instance->Receive(message); });
    return instance;
}

BackgroundTaskInstance::BackgroundTaskInstance(std::uint32_t number, Registration task, IInspectable triggerDetails)
    : m_number(number),
      m_end(std::make_shared<DeferralCounter>([host = m_host, number] { host.Tell(TaskCompleted{number}); })),
      m_task(std::move(task)), m_triggerDetails(std::move(triggerDetails))
{
}

void BackgroundTaskInstance::Returned()
{
    m_host.Tell(TaskReturned{m_number});
    m_end->Finish();
}

// Its own is not known here: the device's number for it.
winrt::guid BackgroundTaskInstance::InstanceId() const noexcept
{
    return {m_number, 0, 0, {}};
}

BackgroundTaskInstance::Registration BackgroundTaskInstance::Task() const
{
    return StruckByNull(L"BackgroundTaskInstance.Task") ? Registration(nullptr) : m_task;
}

IInspectable BackgroundTaskInstance::TriggerDetails() const
{
    return StruckByNull(L"BackgroundTaskInstance.TriggerDetails") ? nullptr : m_triggerDetails;
}

Background::BackgroundTaskDeferral BackgroundTaskInstance::GetDeferral() const
{
    return StruckByNull(L"BackgroundTaskInstance.GetDeferral") ? Background::BackgroundTaskDeferral(nullptr)
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

// A completion may cross the cancellation: Canceled is raised all the same.
void BackgroundTaskInstance::Receive(MessageRouter::Message const& message)
{
    if (auto const* const cancelled = std::get_if<TaskCancelled>(&message))
    {
        auto const reason = static_cast<BackgroundTaskCancellationReason>(cancelled->reason);
        m_canceled.RaiseOrWait(*this, [reason](BackgroundTaskInstance& self) {
            self.m_canceled.Call(self.get_strong().as<Background::IBackgroundTaskInstance>(), reason);
        });
        return;
    }
    if (auto const host = m_host.Get()) // it has ended
    {
        host->Router().RemoveReceiver({Address::Kind::Instance, m_number});
    }
}

} // namespace sim
