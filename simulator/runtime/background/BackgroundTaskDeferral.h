#pragma once
#include "simulator/runtime/DeferralCounter.h"
#include "simulator/runtime/Namespaces.h"
#include "simulator/runtime/Runtime.h"

#include <atomic>
#include <winrt/Windows.ApplicationModel.Background.h>

namespace sim
{

// Keeps a task running until it is completed. Released without that, it keeps it running until the platform's limit.
struct BackgroundTaskDeferral : winrt::implements<BackgroundTaskDeferral, AppModel::Background::IBackgroundTaskDeferral>
{
    using class_type = AppModel::Background::BackgroundTaskDeferral;

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

} // namespace sim
