#pragma once
#include "simulator/runtime/Namespaces.h"
#include "simulator/runtime/Runtime.h"
#include "simulator/runtime/Unserved.h"

#include <winrt/Windows.ApplicationModel.Background.h>

namespace sim
{

// Registers tasks that run in the app's own process.
struct BackgroundTaskBuilder
    : winrt::implements<BackgroundTaskBuilder, Platform::Background::IBackgroundTaskBuilder,
                        Platform::Background::IBackgroundTaskBuilder2, Platform::Background::IBackgroundTaskBuilder3>
{
    using class_type = Platform::Background::BackgroundTaskBuilder;

    winrt::hstring Name() const { return m_name; }

    void Name(winrt::hstring const& value);
    void SetTrigger(Platform::Background::IBackgroundTrigger const& trigger);

    // Fails without a trigger, and with a time trigger below 15 minutes.
    Platform::Background::BackgroundTaskRegistration Register() const;

    // Empty, always: no tasks in other processes.
    winrt::hstring TaskEntryPoint() const { return {}; }

    Unserved TaskEntryPoint(winrt::hstring const&) const { return {}; }

    Unserved AddCondition(Platform::Background::IBackgroundCondition const&) const { return {}; }

    bool CancelOnConditionLoss() const noexcept { return false; }

    Unserved CancelOnConditionLoss(bool) const { return {}; }

    bool IsNetworkRequested() const noexcept { return false; }

    Unserved IsNetworkRequested(bool) const { return {}; }

  private:
    winrt::hstring m_name;
    Platform::Background::IBackgroundTrigger m_trigger;
};

struct BackgroundTaskBuilderFactory : winrt::implements<BackgroundTaskBuilderFactory, IActivationFactory>
{
    IInspectable ActivateInstance() const
    {
        ThrowIfStruck(L"BackgroundTaskBuilder.ActivateInstance");
        return winrt::make<BackgroundTaskBuilder>();
    }
};

} // namespace sim
