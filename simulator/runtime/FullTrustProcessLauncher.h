#pragma once
#include "simulator/runtime/Namespaces.h"
#include "simulator/runtime/Unserved.h"

#include <winrt/Windows.ApplicationModel.h>
#include <winrt/Windows.Foundation.h>

namespace sim
{

// The static members of Windows.ApplicationModel.FullTrustProcessLauncher. The actions complete when the process has
// been started, on a thread of the multi-threaded apartment.
struct FullTrustProcessLauncherFactory
    : winrt::implements<FullTrustProcessLauncherFactory, IActivationFactory, Platform::IFullTrustProcessLauncherStatics>
{
    using IAsyncAction = winrt::Windows::Foundation::IAsyncAction;

    Unserved ActivateInstance() const { return {}; }

    IAsyncAction LaunchFullTrustProcessForCurrentAppAsync() const;
    IAsyncAction LaunchFullTrustProcessForCurrentAppAsync(winrt::hstring const& parameterGroupId) const;
    IAsyncAction LaunchFullTrustProcessForAppAsync(winrt::hstring const& fullTrustPackageRelativeAppId) const;
    IAsyncAction LaunchFullTrustProcessForAppAsync(winrt::hstring const& fullTrustPackageRelativeAppId,
                                                   winrt::hstring const& parameterGroupId) const;
};

} // namespace sim
