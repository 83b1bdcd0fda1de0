#pragma once
#include "simulator/protocol/Activation.h"
#include "simulator/runtime/BufferedEvent.h"
#include "simulator/runtime/DeferralCounter.h"
#include "simulator/runtime/HostReference.h"
#include "simulator/runtime/Implements.h"

#include <winrt/Windows.ApplicationModel.Background.h>
#include <winrt/Windows.Foundation.h>

namespace sim
{

// One run of a background task, which is kept until OnBackgroundActivated has returned and all deferrals are completed.
struct BackgroundTaskInstance : Implements<BackgroundTaskInstance, Background::IBackgroundTaskInstance,
                                           Background::IBackgroundTaskInstance2, Background::IBackgroundTaskInstance4>
{
    using Registration = Background::BackgroundTaskRegistration;
    using CanceledHandler = Background::BackgroundTaskCanceledEventHandler;

    static winrt::com_ptr<BackgroundTaskInstance> Start(ServiceStart const& start);
    static winrt::com_ptr<BackgroundTaskInstance> Start(TaskStart const& start);

    BackgroundTaskInstance(std::uint32_t number, Registration task, IInspectable triggerDetails);

    // OnBackgroundActivated has returned.
    void Returned();

    winrt::guid InstanceId() const noexcept;
    Registration Task() const;
    IInspectable TriggerDetails() const;
    Background::BackgroundTaskDeferral GetDeferral() const;

    winrt::event_token Canceled(CanceledHandler const& handler);
    void Canceled(winrt::event_token token);

    std::uint32_t Progress() const noexcept { return m_progress; }

    void Progress(std::uint32_t value) noexcept { m_progress = value; }

    std::uint32_t SuspendedCount() const noexcept { return 0; }

    std::uint32_t GetThrottleCount(Background::BackgroundTaskThrottleCounter const&) const noexcept { return 0; }

  private:
    static winrt::com_ptr<BackgroundTaskInstance> Start(std::uint32_t number, Registration const& task,
                                                        IInspectable const& triggerDetails);
    void Receive(MessageRouter::Message const& message);

    std::uint32_t m_number;
    HostReference m_host;
    std::shared_ptr<DeferralCounter> m_end;
    Registration m_task;
    IInspectable m_triggerDetails;
    std::atomic<std::uint32_t> m_progress = 0;
    BufferedEvent<BackgroundTaskInstance, CanceledHandler> m_canceled;
};

} // namespace sim
