#pragma once
#include "simulator/protocol/Activation.h"
#include "simulator/runtime/ApplicationBase.h"
#include "simulator/runtime/Namespaces.h"

#include <atomic>
#include <windows.h>
#include <winrt/Windows.ApplicationModel.Activation.h>
#include <winrt/Windows.UI.Core.h>
#include <winrt/Windows.UI.Xaml.h>

namespace sim
{

// The XAML framework of a process: its one application object, its window, and the UI thread that runs them.
class Framework
{
  public:
    static Framework& Instance() noexcept;

    // Runs the app on a new thread, its UI thread, and returns when it has ended: 0, or the failure of the callback
    // that was to construct the application object.
    std::int32_t Run(Xaml::ApplicationInitializationCallback const& callback);

    // Keeps the app's object: the callback drops the only other reference.
    void Adopt(IInspectable const& application, ApplicationBase& base)
    {
        m_application = application;
        m_base = &base;
    }

    // The base is destroyed. If its application is still kept, the app's constructor failed after composition and there
    // is no object to release: the reference is dropped.
    void Forget(ApplicationBase const& base) noexcept
    {
        if (m_base == &base)
        {
            m_base = nullptr;
            winrt::detach_abi(m_application);
        }
    }

    Xaml::Application CurrentApplication() const
    {
        return m_application ? m_application.as<Xaml::Application>() : Xaml::Application(nullptr);
    }

    // Null without a foreground activation, and on all threads but the UI thread.
    Xaml::Window CurrentWindow() const noexcept
    {
        return GetCurrentThreadId() == m_uiThread ? m_window : Xaml::Window(nullptr);
    }

    // Throws RPC_E_WRONG_THREAD on all threads but the UI thread.
    void NeedUiThread() const
    {
        if (GetCurrentThreadId() != m_uiThread)
        {
            throw winrt::hresult_error(RPC_E_WRONG_THREAD);
        }
    }

  private:
    std::int32_t RunApp(Xaml::ApplicationInitializationCallback const& callback);
    void Construct(Xaml::ApplicationInitializationCallback const& callback);
    void Deliver(Activation const& activation);

    // Calls the app's override for it.
    void Override(UserLaunch const& launch);
    void Override(ProtocolLaunch const& launch);
    void Override(auto const& taskStart);

    // Makes the window. Returns the previous execution state.
    Activated::ApplicationExecutionState ShowWindow();
    void End() noexcept;

    IInspectable m_application;
    ApplicationBase* m_base = nullptr; // as long as m_application
    Xaml::Window m_window{nullptr};
    std::atomic<unsigned long> m_uiThread = 0;
    bool m_wasActivated = false;
};

} // namespace sim
