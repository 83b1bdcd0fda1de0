#pragma once
#include "simulator/runtime/Namespaces.h"
#include "simulator/runtime/Runtime.h"
#include "simulator/runtime/Unserved.h"

#include <winrt/Windows.ApplicationModel.Core.h>
#include <winrt/Windows.Foundation.h>

namespace sim
{

// The static members of Windows.ApplicationModel.Core.CoreApplication.
struct CoreApplicationFactory
    : winrt::implements<CoreApplicationFactory, IActivationFactory, Platform::Core::ICoreApplication,
                        Platform::Core::ICoreApplicationExit>
{
    // Ends the app without Suspending. It returns: the app goes on until its main view's thread is free.
    void Exit() const
    {
        ThrowIfStruck(L"CoreApplication.Exit");
        CurrentHost().Exit();
    }

    Unserved ActivateInstance() const { return {}; }

    template <typename... T>
    Unserved Id(T const&...) const
    {
        return {};
    }

    template <typename... T>
    Unserved Suspending(T const&...) const
    {
        return {};
    }

    template <typename... T>
    Unserved Resuming(T const&...) const
    {
        return {};
    }

    template <typename... T>
    Unserved Properties(T const&...) const
    {
        return {};
    }

    template <typename... T>
    Unserved GetCurrentView(T const&...) const
    {
        return {};
    }

    template <typename... T>
    Unserved Run(T const&...) const
    {
        return {};
    }

    template <typename... T>
    Unserved RunWithActivationFactories(T const&...) const
    {
        return {};
    }

    template <typename... T>
    Unserved Exiting(T const&...) const
    {
        return {};
    }
};

} // namespace sim
