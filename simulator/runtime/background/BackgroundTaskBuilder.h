#pragma once
#include "simulator/runtime/Implements.h"
#include "simulator/runtime/Runtime.h"

#include <winrt/Windows.ApplicationModel.Background.h>

namespace sim
{

// Registers tasks that run in the app's own process.
struct BackgroundTaskBuilder : Implements<BackgroundTaskBuilder, Background::IBackgroundTaskBuilder,
                                          Background::IBackgroundTaskBuilder2, Background::IBackgroundTaskBuilder3>
{
    using class_type = Background::BackgroundTaskBuilder;

    winrt::hstring Name() const { return m_name; }

    void Name(winrt::hstring const& value);
    void SetTrigger(Background::IBackgroundTrigger const& trigger);

    // Fails without a trigger, and with a time trigger below 15 minutes.
    Background::BackgroundTaskRegistration Register() const;

    // Empty, always: no tasks in other processes.
    winrt::hstring TaskEntryPoint() const { return {}; }

    NotImplemented TaskEntryPoint(winrt::hstring const&) const { return {}; }

    bool CancelOnConditionLoss() const noexcept { return false; }

    NotImplemented CancelOnConditionLoss(bool) const { return {}; }

    bool IsNetworkRequested() const noexcept { return false; }

    NotImplemented IsNetworkRequested(bool) const { return {}; }

  private:
    winrt::hstring m_name;
    Background::IBackgroundTrigger m_trigger;
};

} // namespace sim
