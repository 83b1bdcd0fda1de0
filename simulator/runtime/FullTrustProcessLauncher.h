#pragma once
#include "simulator/runtime/Implements.h"

#include <optional>
#include <string>
#include <winrt/Windows.ApplicationModel.h>
#include <winrt/Windows.Foundation.h>

namespace sim
{

// The static members of Windows.ApplicationModel.FullTrustProcessLauncher. The actions complete when the process has
// been started, on a thread of the multi-threaded apartment.
struct FullTrustProcessLauncherFactory
    : Implements<FullTrustProcessLauncherFactory, IActivationFactory, AppModel::IFullTrustProcessLauncherStatics>
{
    // Of the overloads, group is the parameter group's id.
    static Foundation::IAsyncAction LaunchFullTrustProcessForCurrentAppAsync(auto const&... group)
    {
        return Launch(L"FullTrustProcessLauncher.LaunchFullTrustProcessForCurrentAppAsync", {}, std::wstring(group)...);
    }

    static Foundation::IAsyncAction LaunchFullTrustProcessForAppAsync(winrt::hstring const& application,
                                                                      auto const&... group)
    {
        return Launch(L"FullTrustProcessLauncher.LaunchFullTrustProcessForAppAsync", application,
                      std::wstring(group)...);
    }

  private:
    static Foundation::IAsyncAction Launch(std::wstring_view call, std::wstring_view application,
                                           std::optional<std::wstring> group = std::nullopt);
};

} // namespace sim
