#pragma once
#include "simulator/runtime/Namespaces.h"
#include "simulator/runtime/Unserved.h"

#include <string>
#include <winrt/Windows.ApplicationModel.Background.h>
#include <winrt/Windows.Foundation.Collections.h>
#include <winrt/Windows.Foundation.h>

namespace sim
{

// A task that the app has registered, or an app service of it that runs.
struct BackgroundTaskRegistration
    : winrt::implements<BackgroundTaskRegistration, Platform::Background::IBackgroundTaskRegistration,
                        Platform::Background::IBackgroundTaskRegistration2,
                        Platform::Background::IBackgroundTaskRegistration3>
{
    using class_type = Platform::Background::BackgroundTaskRegistration;

    // id: a GUID without braces; empty for an app service.
    BackgroundTaskRegistration(std::wstring id, std::wstring_view name) : m_id(std::move(id)), m_name(name) {}

    winrt::guid TaskId() const;
    winrt::hstring Name() const;

    // cancelTask: running instances of it, too. Nothing when it is registered no more.
    void Unregister(bool cancelTask) const;

    template <typename... T>
    Unserved Progress(T const&...) const
    {
        return {};
    }

    template <typename... T>
    Unserved Completed(T const&...) const
    {
        return {};
    }

    Unserved Trigger() const { return {}; }

    Unserved TaskGroup() const { return {}; }

  private:
    std::wstring m_id;
    winrt::hstring m_name;
};

// Its static members.
struct BackgroundTaskRegistrationFactory : winrt::implements<BackgroundTaskRegistrationFactory, IActivationFactory,
                                                             Platform::Background::IBackgroundTaskRegistrationStatics>
{
    Unserved ActivateInstance() const { return {}; }

    // As they are now, in the order of their registration.
    Collections::IMapView<winrt::guid, Platform::Background::IBackgroundTaskRegistration> AllTasks() const;
};

} // namespace sim
