#pragma once
#include "simulator/runtime/Implements.h"

#include <string>
#include <winrt/Windows.ApplicationModel.Background.h>
#include <winrt/Windows.Foundation.Collections.h>
#include <winrt/Windows.Foundation.h>

namespace sim
{

// A task that the app has registered, or an app service of it that runs.
struct BackgroundTaskRegistration
    : Implements<BackgroundTaskRegistration, Background::IBackgroundTaskRegistration,
                 Background::IBackgroundTaskRegistration2, Background::IBackgroundTaskRegistration3>
{
    using class_type = Background::BackgroundTaskRegistration;

    // id: a GUID without braces; empty for an app service.
    BackgroundTaskRegistration(std::wstring id, std::wstring_view name) : m_id(std::move(id)), m_name(name) {}

    winrt::guid TaskId() const;
    winrt::hstring Name() const;

    // cancelTask: running instances of it, too. Nothing when it is registered no more.
    void Unregister(bool cancelTask) const;

  private:
    std::wstring m_id;
    winrt::hstring m_name;
};

// Its static members.
struct BackgroundTaskRegistrationFactory
    : Implements<BackgroundTaskRegistrationFactory, IActivationFactory, Background::IBackgroundTaskRegistrationStatics>
{
    // As they are now, in the order of their registration.
    Collections::IMapView<winrt::guid, Background::IBackgroundTaskRegistration> AllTasks() const;
};

} // namespace sim
