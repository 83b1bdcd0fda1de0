#pragma once
#include "simulator/runtime/Namespaces.h"
#include "simulator/runtime/NotImplemented.h"
#include "simulator/runtime/Runtime.h"

#include <winrt/Windows.ApplicationModel.h>
#include <winrt/Windows.Foundation.h>
#include <winrt/Windows.UI.Xaml.h>

namespace sim
{

// The platform's half of an application object: the inner object that the app's own class is composed over.
struct ApplicationBase : winrt::implements<ApplicationBase, Xaml::IApplication, Xaml::IApplication2,
                                           Xaml::IApplicationOverrides, Xaml::IApplicationOverrides2, winrt::composable>
{
    using class_type = Xaml::Application;

    ApplicationBase() = default;
    ApplicationBase(ApplicationBase const&) = delete;
    ApplicationBase& operator=(ApplicationBase const&) = delete;
    ~ApplicationBase() override;

    winrt::event_token UnhandledException(Xaml::UnhandledExceptionEventHandler const& handler)
    {
        return m_unhandledException.add(handler);
    }

    void UnhandledException(winrt::event_token token) { m_unhandledException.remove(token); }

    winrt::event_token Suspending(Xaml::SuspendingEventHandler const& handler)
    {
        ThrowIfStruck(L"Application.Suspending");
        return m_suspending.add(handler);
    }

    void Suspending(winrt::event_token token) { m_suspending.remove(token); }

    void Exit() { CurrentHost().Exit(); }

    void RaiseSuspending(IInspectable const& sender);

    // The handlers get no arguments: what they hold is not among the known binary interfaces.
    void RaiseUnhandledException(IInspectable const& sender);

    // The overrides of an app that does not override them.
    template <typename... T>
    void OnActivated(T const&...) const noexcept
    {
    }

    template <typename... T>
    void OnLaunched(T const&...) const noexcept
    {
    }

    template <typename... T>
    void OnFileActivated(T const&...) const noexcept
    {
    }

    template <typename... T>
    void OnSearchActivated(T const&...) const noexcept
    {
    }

    template <typename... T>
    void OnShareTargetActivated(T const&...) const noexcept
    {
    }

    template <typename... T>
    void OnFileOpenPickerActivated(T const&...) const noexcept
    {
    }

    template <typename... T>
    void OnFileSavePickerActivated(T const&...) const noexcept
    {
    }

    template <typename... T>
    void OnCachedFileUpdaterActivated(T const&...) const noexcept
    {
    }

    template <typename... T>
    void OnWindowCreated(T const&...) const noexcept
    {
    }

    template <typename... T>
    void OnBackgroundActivated(T const&...) const noexcept
    {
    }

    // What no app without a page asks for.
    template <typename... T>
    NotImplemented Resources(T const&...) const
    {
        return {};
    }

    template <typename... T>
    NotImplemented DebugSettings(T const&...) const
    {
        return {};
    }

    template <typename... T>
    NotImplemented RequestedTheme(T const&...) const
    {
        return {};
    }

    template <typename... T>
    NotImplemented Resuming(T const&...) const
    {
        return {};
    }

    template <typename... T>
    NotImplemented FocusVisualKind(T const&...) const
    {
        return {};
    }

    template <typename... T>
    NotImplemented RequiresPointerMode(T const&...) const
    {
        return {};
    }

    template <typename... T>
    NotImplemented LeavingBackground(T const&...) const
    {
        return {};
    }

    template <typename... T>
    NotImplemented EnteredBackground(T const&...) const
    {
        return {};
    }

  private:
    winrt::event<Xaml::UnhandledExceptionEventHandler> m_unhandledException;
    winrt::event<Xaml::SuspendingEventHandler> m_suspending;
};

} // namespace sim
