#include "simulator/runtime/AsyncCall.h"
#include "simulator/runtime/Factory.h"
#include "simulator/runtime/Implements.h"

#include <winrt/Windows.ApplicationModel.h>

namespace sim
{

namespace
{

// Completes when the process has been started, on a thread of the multi-threaded apartment.
Foundation::IAsyncAction Launch(std::wstring_view call, winrt::hstring const& application,
                                std::optional<std::wstring> group = std::nullopt)
{
    AsyncFault const fault(call);
    LaunchDesktop launch{std::wstring(application), std::move(group)};
    auto const finish = [](DesktopLaunched const& launched) { winrt::check_hresult(launched.result); };
    return fault.GivesNull()
               ? nullptr
               : fault.Handed(AskPlatform<Foundation::IAsyncAction>(fault, HostReference(), std::move(launch), finish));
}

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
};

} // namespace

IInspectable MakeFullTrustProcessLauncherFactory()
{
    return winrt::make<FullTrustProcessLauncherFactory>();
}

} // namespace sim
