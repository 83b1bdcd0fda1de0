#include "simulator/runtime/Framework.h"

#include "simulator/base/Overloaded.h"
#include "simulator/base/Text.h"
#include "simulator/protocol/Event.h"
#include "simulator/runtime/Record.h"
#include "simulator/runtime/background/BackgroundTaskInstance.h"
#include "simulator/runtime/xaml/Markup.h"
#include "simulator/runtime/xaml/Page.h"

#include <thread>
#include <windows.h>

namespace sim
{

namespace
{

// The arguments of OnLaunched.
using LaunchActivatedEventArgs = Record<Activated::LaunchActivatedEventArgs,
                                        Interfaces<Activated::ILaunchActivatedEventArgs, Activated::IActivatedEventArgs,
                                                   Activated::IPrelaunchActivatedEventArgs>,
                                        Property<"Kind", Activated::ActivationKind>,
                                        Property<"PreviousExecutionState", Activated::ApplicationExecutionState>,
                                        Property<"Arguments", winrt::hstring>, Property<"PrelaunchActivated", bool>>;

// The arguments of OnActivated for a URI of the app's protocol.
using ProtocolActivatedEventArgs =
    Record<Activated::ProtocolActivatedEventArgs,
           Interfaces<Activated::IProtocolActivatedEventArgs, Activated::IActivatedEventArgs>,
           Property<"Kind", Activated::ActivationKind>,
           Property<"PreviousExecutionState", Activated::ApplicationExecutionState>>;

// The arguments of OnBackgroundActivated.
using BackgroundActivatedEventArgs =
    Record<Activated::BackgroundActivatedEventArgs, Interfaces<Activated::IBackgroundActivatedEventArgs>,
           Property<"TaskInstance", Background::IBackgroundTaskInstance>>;

// It shows nothing.
using Window = Record<Xaml::Window, Interfaces<Xaml::IWindow>, Property<"Content", Xaml::UIElement>>;

using InitializationParams =
    Record<Xaml::ApplicationInitializationCallbackParams, Interfaces<Xaml::IApplicationInitializationCallbackParams>>;

// Null when a fault takes these arguments away.
template <typename Args, typename... Values>
typename Args::class_type MakeArgs(Values const&... values)
{
    auto const name = LastPart(winrt::name_of<typename Args::class_type>());
    return InjectFault(name) ? nullptr : winrt::make<Args>(values...);
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
    std::thread([&] { result = RunApp(callback); }).join();
    return result;
}

std::int32_t Framework::RunApp(Xaml::ApplicationInitializationCallback const& callback)
{
    std::int32_t result = S_OK;
    m_uiThread = GetCurrentThreadId();
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

// An exception of an override ends the app.
void Framework::Deliver(Activation const& activation)
try
{
    std::visit(Overloaded{
                   [this](Suspension const&) { m_base->RaiseSuspending(m_application); },
                   [this](PageRequest const& page) { MakePage(CurrentApplication(), page.className); },
                   [this](auto const& content) { Override(content); },
               },
               activation.content);
}
catch (...)
{
    auto const result = static_cast<std::int32_t>(winrt::to_hresult());
    CurrentHost().Report(L"unhandled-exception", ResultDetail(result));
    m_base->RaiseUnhandledException(m_application);
    CurrentHost().Fail(result);
}

void Framework::Override(ProtocolLaunch const&)
{
    auto const before = ShowWindow();
    auto const args = MakeArgs<ProtocolActivatedEventArgs>(Activated::ActivationKind::Protocol, before);
    m_application.as<Xaml::IApplicationOverrides>().OnActivated(args.try_as<Activated::IActivatedEventArgs>());
}

void Framework::Override(UserLaunch const& launch)
{
    auto const before = ShowWindow();
    m_application.as<Xaml::IApplicationOverrides>().OnLaunched(MakeArgs<LaunchActivatedEventArgs>(
        Activated::ActivationKind::Launch, before, winrt::hstring(launch.arguments), false));
}

void Framework::Override(auto const& taskStart)
{
    RunTask(taskStart, [this](Background::IBackgroundTaskInstance const& instance) {
        m_application.as<Xaml::IApplicationOverrides2>().OnBackgroundActivated(
            MakeArgs<BackgroundActivatedEventArgs>(instance));
    });
}

Activated::ApplicationExecutionState Framework::ShowWindow()
{
    if (!m_window)
    {
        m_window = winrt::make<Window>(AsElement(CurrentHost().WindowContent()));
    }
    using Activated::ApplicationExecutionState;
    return std::exchange(m_wasActivated, true) ? ApplicationExecutionState::Running
                                               : ApplicationExecutionState::NotRunning;
}

void Framework::End() noexcept
{
    m_window = nullptr;
    m_base = nullptr;
    m_application = nullptr;
    m_uiThread = 0;
    m_wasActivated = false;
}

} // namespace sim
