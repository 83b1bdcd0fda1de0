#pragma once
#include "simulator/runtime/Implements.h"
#include "simulator/runtime/Namespaces.h"
#include "simulator/runtime/Runtime.h"

#include <string>
#include <winrt/Windows.ApplicationModel.Activation.h>
#include <winrt/Windows.Foundation.h>

namespace sim
{

// What OnLaunched gets.
struct LaunchActivatedEventArgs : Implements<LaunchActivatedEventArgs, Activated::ILaunchActivatedEventArgs,
                                             Activated::IActivatedEventArgs, Activated::IPrelaunchActivatedEventArgs>
{
    using class_type = Activated::LaunchActivatedEventArgs;

    LaunchActivatedEventArgs(std::wstring arguments, Activated::ApplicationExecutionState before)
        : m_arguments(std::move(arguments)), m_before(before)
    {
    }

    Activated::ActivationKind Kind() const
    {
        ThrowIfStruck(L"LaunchActivatedEventArgs.Kind");
        return Activated::ActivationKind::Launch;
    }

    Activated::ApplicationExecutionState PreviousExecutionState() const noexcept { return m_before; }

    winrt::hstring Arguments() const { return winrt::hstring(m_arguments); }

    bool PrelaunchActivated() const noexcept { return false; }

  private:
    std::wstring m_arguments;
    Activated::ApplicationExecutionState m_before;
};

// What OnActivated gets when a URI of the app's protocol is opened.
struct ProtocolActivatedEventArgs
    : Implements<ProtocolActivatedEventArgs, Activated::IProtocolActivatedEventArgs, Activated::IActivatedEventArgs>
{
    using class_type = Activated::ProtocolActivatedEventArgs;

    explicit ProtocolActivatedEventArgs(Activated::ApplicationExecutionState before) : m_before(before) {}

    Activated::ActivationKind Kind() const
    {
        ThrowIfStruck(L"ProtocolActivatedEventArgs.Kind");
        return Activated::ActivationKind::Protocol;
    }

    Activated::ApplicationExecutionState PreviousExecutionState() const noexcept { return m_before; }

  private:
    Activated::ApplicationExecutionState m_before;
};

} // namespace sim
