#pragma once
#include "simulator/runtime/Namespaces.h"

#include <chrono>
#include <winrt/Windows.ApplicationModel.h>

namespace sim
{

// What a handler of Suspending gets. The deadline is told and not enforced: nothing is suspended here.

struct SuspendingDeferral : winrt::implements<SuspendingDeferral, AppModel::ISuspendingDeferral>
{
    using class_type = AppModel::SuspendingDeferral;

    void Complete() const noexcept {}
};

struct SuspendingOperation : winrt::implements<SuspendingOperation, AppModel::ISuspendingOperation>
{
    using class_type = AppModel::SuspendingOperation;

    AppModel::SuspendingDeferral GetDeferral() const { return winrt::make<SuspendingDeferral>(); }

    winrt::Windows::Foundation::DateTime Deadline() const noexcept
    {
        return winrt::clock::now() + std::chrono::seconds(5);
    }
};

struct SuspendingEventArgs : winrt::implements<SuspendingEventArgs, AppModel::ISuspendingEventArgs>
{
    using class_type = AppModel::SuspendingEventArgs;

    AppModel::SuspendingOperation SuspendingOperation() const { return winrt::make<sim::SuspendingOperation>(); }
};

} // namespace sim
