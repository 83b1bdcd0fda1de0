#pragma once
#include "simulator/runtime/Namespaces.h"
#include "simulator/runtime/NotImplemented.h"
#include "simulator/runtime/Runtime.h"

#include <winrt/Windows.ApplicationModel.Core.h>
#include <winrt/Windows.Foundation.h>

namespace sim
{

// The static members of Windows.ApplicationModel.Core.CoreApplication.
struct CoreApplicationFactory
    : winrt::implements<CoreApplicationFactory, IActivationFactory, AppModel::Core::ICoreApplication,
                        AppModel::Core::ICoreApplicationExit>
{
    // Ends the app without Suspending. It returns: the app goes on until its main view's thread is free.
    void Exit() const
    {
        ThrowIfStruck(L"CoreApplication.Exit");
        CurrentHost().Exit();
    }

    NotImplemented ActivateInstance() const { return {}; }

    template <typename... T>
    NotImplemented Id(T const&...) const
    {
        return {};
    }

    template <typename... T>
    NotImplemented Suspending(T const&...) const
    {
        return {};
    }

    template <typename... T>
    NotImplemented Resuming(T const&...) const
    {
        return {};
    }

    template <typename... T>
    NotImplemented Properties(T const&...) const
    {
        return {};
    }

    template <typename... T>
    NotImplemented GetCurrentView(T const&...) const
    {
        return {};
    }

    template <typename... T>
    NotImplemented Run(T const&...) const
    {
        return {};
    }

    template <typename... T>
    NotImplemented RunWithActivationFactories(T const&...) const
    {
        return {};
    }

    template <typename... T>
    NotImplemented Exiting(T const&...) const
    {
        return {};
    }
};

} // namespace sim
