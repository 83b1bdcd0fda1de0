#pragma once
#include "simulator/model/Activation.h"
#include "simulator/runtime/HostLink.h"
#include "simulator/runtime/Namespaces.h"
#include "simulator/runtime/PendingEnd.h"
#include "simulator/runtime/Unserved.h"
#include "simulator/runtime/WaitingEvent.h"

#include <winrt/Windows.ApplicationModel.Background.h>
#include <winrt/Windows.Foundation.h>

namespace sim
{

// One run of a background task, which is kept until OnBackgroundActivated has returned and all deferrals are completed.
struct BackgroundTaskInstance
    : winrt::implements<BackgroundTaskInstance, Platform::Background::IBackgroundTaskInstance,
                        Platform::Background::IBackgroundTaskInstance2, Platform::Background::IBackgroundTaskInstance4>
{
    using Registration = Platform::Background::BackgroundTaskRegistration;
    using CanceledHandler = Platform::Background::BackgroundTaskCanceledEventHandler;

    // For an activation that is a background one.
    static winrt::com_ptr<BackgroundTaskInstance> Start(Activation const& activation);

    BackgroundTaskInstance(std::wstring id, Registration task, IInspectable triggerDetails);

    // OnBackgroundActivated has returned.
    void Returned();

    winrt::guid InstanceId() const noexcept;
    Registration Task() const;
    IInspectable TriggerDetails() const;
    Platform::Background::BackgroundTaskDeferral GetDeferral() const;

    winrt::event_token Canceled(CanceledHandler const& handler);
    void Canceled(winrt::event_token token);

    std::uint32_t Progress() const noexcept { return m_progress; }

    void Progress(std::uint32_t value) noexcept { m_progress = value; }

    std::uint32_t SuspendedCount() const noexcept { return 0; }

    std::uint32_t GetThrottleCount(Platform::Background::BackgroundTaskThrottleCounter const&) const noexcept
    {
        return 0;
    }

    Unserved User() const { return {}; }

  private:
    void Receive(Message const& message);

    std::wstring m_id;
    HostLink m_host;
    std::shared_ptr<PendingEnd> m_end;
    Registration m_task;
    IInspectable m_triggerDetails;
    std::atomic<std::uint32_t> m_progress = 0;
    WaitingEvent<BackgroundTaskInstance, CanceledHandler> m_canceled;
};

} // namespace sim
