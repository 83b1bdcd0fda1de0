#pragma once
#include "simulator/runtime/Implements.h"
#include "simulator/runtime/Runtime.h"

#include <winrt/Windows.ApplicationModel.Core.h>
#include <winrt/Windows.Foundation.h>

namespace sim
{

// The static members of Windows.ApplicationModel.Core.CoreApplication.
struct CoreApplicationFactory : Implements<CoreApplicationFactory, IActivationFactory, AppModel::Core::ICoreApplication,
                                           AppModel::Core::ICoreApplicationExit>
{
    // Ends the app without Suspending. It returns: the app goes on until its main view's thread is free.
    void Exit() const
    {
        ThrowIfStruck(L"CoreApplication.Exit");
        CurrentHost().Exit();
    }
};

} // namespace sim
