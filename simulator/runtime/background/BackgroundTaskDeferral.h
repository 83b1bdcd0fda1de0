#pragma once
#include "simulator/runtime/Namespaces.h"
#include "simulator/runtime/PendingEnd.h"
#include "simulator/runtime/Runtime.h"

#include <atomic>
#include <winrt/Windows.ApplicationModel.Background.h>

namespace sim
{

// Keeps a task running until it is completed. Released without that, it keeps it running until the platform's limit.
struct BackgroundTaskDeferral : winrt::implements<BackgroundTaskDeferral, Platform::Background::IBackgroundTaskDeferral>
{
    using class_type = Platform::Background::BackgroundTaskDeferral;

    explicit BackgroundTaskDeferral(std::shared_ptr<PendingEnd> task) : m_task(std::move(task)) { m_task->Take(); }

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
    std::shared_ptr<PendingEnd> m_task;
    std::atomic<bool> m_isCompleted = false;
};

} // namespace sim
