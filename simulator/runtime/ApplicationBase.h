#pragma once
#include "simulator/runtime/Implements.h"
#include "simulator/runtime/Runtime.h"

#include <winrt/Windows.ApplicationModel.h>
#include <winrt/Windows.Foundation.h>
#include <winrt/Windows.UI.Xaml.h>

namespace sim
{

// The platform's half of an application object: the inner object that the app's own class is composed over.
struct ApplicationBase : Implements<ApplicationBase, Xaml::IApplication, Xaml::IApplication2,
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
        InjectFault(L"Application.Suspending");
        return m_suspending.add(handler);
    }

    void Suspending(winrt::event_token token) { m_suspending.remove(token); }

    void Exit() { CurrentHost().Exit(); }

    void RaiseSuspending(IInspectable const& sender);

    // The handlers get null for arguments, whose binary interface is unknown.
    void RaiseUnhandledException(IInspectable const& sender);

    // The defaults of the overrides.
    void OnActivated(auto const&...) const noexcept {}
    void OnLaunched(auto const&...) const noexcept {}
    void OnFileActivated(auto const&...) const noexcept {}
    void OnSearchActivated(auto const&...) const noexcept {}
    void OnShareTargetActivated(auto const&...) const noexcept {}
    void OnFileOpenPickerActivated(auto const&...) const noexcept {}
    void OnFileSavePickerActivated(auto const&...) const noexcept {}
    void OnCachedFileUpdaterActivated(auto const&...) const noexcept {}
    void OnWindowCreated(auto const&...) const noexcept {}
    void OnBackgroundActivated(auto const&...) const noexcept {}

  private:
    winrt::event<Xaml::UnhandledExceptionEventHandler> m_unhandledException;
    winrt::event<Xaml::SuspendingEventHandler> m_suspending;
};

} // namespace sim
