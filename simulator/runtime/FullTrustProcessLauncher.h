#pragma once
#include "simulator/runtime/Implements.h"
#include "simulator/runtime/Namespaces.h"

#include <winrt/Windows.ApplicationModel.h>
#include <winrt/Windows.Foundation.h>

namespace sim
{

// The static members of Windows.ApplicationModel.FullTrustProcessLauncher. The actions complete when the process has
// been started, on a thread of the multi-threaded apartment.
struct FullTrustProcessLauncherFactory
    : Implements<FullTrustProcessLauncherFactory, IActivationFactory, AppModel::IFullTrustProcessLauncherStatics>
{
    using IAsyncAction = winrt::Windows::Foundation::IAsyncAction;

    IAsyncAction LaunchFullTrustProcessForCurrentAppAsync() const;
    IAsyncAction LaunchFullTrustProcessForCurrentAppAsync(winrt::hstring const& parameterGroupId) const;
    IAsyncAction LaunchFullTrustProcessForAppAsync(winrt::hstring const& fullTrustPackageRelativeAppId) const;
    IAsyncAction LaunchFullTrustProcessForAppAsync(winrt::hstring const& fullTrustPackageRelativeAppId,
                                                   winrt::hstring const& parameterGroupId) const;
};

} // namespace sim
