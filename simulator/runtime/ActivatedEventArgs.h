#pragma once
#include "simulator/runtime/Record.h"

#include <winrt/Windows.ApplicationModel.Activation.h>
#include <winrt/Windows.ApplicationModel.Background.h>

namespace sim
{

// What OnLaunched gets.
using LaunchActivatedEventArgs = Record<Activated::LaunchActivatedEventArgs,
                                        Interfaces<Activated::ILaunchActivatedEventArgs, Activated::IActivatedEventArgs,
                                                   Activated::IPrelaunchActivatedEventArgs>,
                                        Property<"Kind", Activated::ActivationKind>,
                                        Property<"PreviousExecutionState", Activated::ApplicationExecutionState>,
                                        Property<"Arguments", winrt::hstring>, Property<"PrelaunchActivated", bool>>;

// What OnActivated gets when a URI of the app's protocol is opened.
using ProtocolActivatedEventArgs =
    Record<Activated::ProtocolActivatedEventArgs,
           Interfaces<Activated::IProtocolActivatedEventArgs, Activated::IActivatedEventArgs>,
           Property<"Kind", Activated::ActivationKind>,
           Property<"PreviousExecutionState", Activated::ApplicationExecutionState>>;

// What OnBackgroundActivated gets.
using BackgroundActivatedEventArgs =
    Record<Activated::BackgroundActivatedEventArgs, Interfaces<Activated::IBackgroundActivatedEventArgs>,
           Property<"TaskInstance", Background::IBackgroundTaskInstance>>;

} // namespace sim
