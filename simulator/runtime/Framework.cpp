#include "simulator/runtime/Framework.h"

#include "simulator/model/Event.h"
#include "simulator/model/Text.h"
#include "simulator/runtime/ActivatedEventArgs.h"
#include "simulator/runtime/BackgroundActivatedEventArgs.h"
#include "simulator/runtime/xaml/PageMaker.h"

#include <thread>
#include <windows.h>

namespace sim
{

namespace
{

struct InitializationParams : winrt::implements<InitializationParams, Xaml::IApplicationInitializationCallbackParams>
{
    using class_type = Xaml::ApplicationInitializationCallbackParams;
};

bool IsBackground(Activation const& activation)
{
    return activation.kind == ActivationKind::AppService || activation.kind == ActivationKind::BackgroundTask;
}

std::vector<std::wstring> ResultDetail(std::int32_t result)
{
    return {Detail(L"result", Hex(static_cast<std::uint32_t>(result)))};
}

} // namespace

Framework& Framework::Instance() noexcept
{
    static Framework framework;
    return framework;
}

std::int32_t Framework::Run(Xaml::ApplicationInitializationCallback const& callback)
{
    std::int32_t result = S_OK;
    std::thread view([&] { result = RunView(callback); });
    view.join();
    return result;
}

void Framework::Adopt(IInspectable const& application, ApplicationBase& base)
{
    m_application = application;
    m_base = &base;
}

void Framework::Forget(ApplicationBase const& base) noexcept
{
    if (m_base == &base)
    {
        m_base = nullptr;
        winrt::detach_abi(m_application);
    }
}

Xaml::Application Framework::CurrentApplication() const
{
    return m_application ? m_application.as<Xaml::Application>() : Xaml::Application(nullptr);
}

Xaml::Window Framework::CurrentWindow() const noexcept
{
    return GetCurrentThreadId() == m_viewThread ? m_window : Xaml::Window(nullptr);
}

void Framework::NeedViewThread() const
{
    if (GetCurrentThreadId() != m_viewThread)
    {
        throw winrt::hresult_error(RPC_E_WRONG_THREAD);
    }
}

std::int32_t Framework::RunView(Xaml::ApplicationInitializationCallback const& callback)
{
    std::int32_t result = S_OK;
    m_viewThread = GetCurrentThreadId();
    winrt::init_apartment(winrt::apartment_type::single_threaded);
    try
    {
        Construct(callback);
        while (auto const activation = CurrentHost().NextActivation())
        {
            Deliver(*activation);
        }
    }
    catch (...)
    {
        result = winrt::to_hresult();
        CurrentHost().Report(L"start-failed", ResultDetail(result));
    }
    End();
    winrt::uninit_apartment();
    return result;
}

void Framework::Construct(Xaml::ApplicationInitializationCallback const& callback)
{
    callback(winrt::make<InitializationParams>());
    if (!m_application)
    {
        throw winrt::hresult_error(E_UNEXPECTED); // it constructed no application object
    }
}

void Framework::Deliver(Activation const& activation)
{
    if (activation.kind == ActivationKind::Suspend)
    {
        m_base->RaiseSuspending(m_application);
        return;
    }
    if (activation.kind == ActivationKind::Page)
    {
        MakePage(CurrentApplication(), activation.argument);
        return;
    }
    try
    {
        IsBackground(activation) ? CallBackgroundOverride(activation) : CallOverride(activation);
    }
    catch (...)
    {
        auto const result = static_cast<std::int32_t>(winrt::to_hresult());
        CurrentHost().Report(L"unhandled-exception", ResultDetail(result));
        m_base->RaiseUnhandledException(m_application);
        CurrentHost().Fail(result);
    }
}

void Framework::CallBackgroundOverride(Activation const& activation) const
{
    auto const instance = BackgroundTaskInstance::Start(activation);
    Activated::BackgroundActivatedEventArgs args{nullptr};
    if (!StruckByNull(L"BackgroundActivatedEventArgs"))
    {
        args = winrt::make<BackgroundActivatedEventArgs>(instance.as<Platform::Background::IBackgroundTaskInstance>());
    }
    m_application.as<Xaml::IApplicationOverrides2>().OnBackgroundActivated(args);
    instance->Returned();
}

void Framework::CallOverride(Activation const& activation)
{
    if (!m_window)
    {
        m_window = winrt::make<sim::Window>(CurrentHost().WindowContent());
    }
    using Activated::ApplicationExecutionState;
    auto const before = m_wasActivated ? ApplicationExecutionState::Running : ApplicationExecutionState::NotRunning;
    m_wasActivated = true;
    auto const overrides = m_application.as<Xaml::IApplicationOverrides>();
    if (activation.kind == ActivationKind::Protocol)
    {
        Activated::IActivatedEventArgs args{nullptr};
        if (!StruckByNull(L"ProtocolActivatedEventArgs"))
        {
            args = winrt::make<ProtocolActivatedEventArgs>(before).as<Activated::IActivatedEventArgs>();
        }
        overrides.OnActivated(args);
        return;
    }
    Activated::LaunchActivatedEventArgs args{nullptr};
    if (!StruckByNull(L"LaunchActivatedEventArgs"))
    {
        args = winrt::make<LaunchActivatedEventArgs>(activation.argument, before);
    }
    overrides.OnLaunched(args);
}

void Framework::End() noexcept
{
    m_window = nullptr;
    m_base = nullptr;
    m_application = nullptr;
    m_viewThread = 0;
    m_wasActivated = false;
}

} // namespace sim
