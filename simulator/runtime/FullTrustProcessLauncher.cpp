#include "simulator/runtime/FullTrustProcessLauncher.h"

#include "simulator/runtime/AsyncFault.h"
#include "simulator/runtime/Awaiters.h"
#include "simulator/runtime/HostReference.h"

using winrt::Windows::Foundation::IAsyncAction;

namespace sim
{

namespace
{

IAsyncAction Run(AsyncFault fault, HostReference process, LaunchDesktop launch)
{
    co_await winrt::resume_agile(fault.Begin());
    auto const host = process.Get();
    if (!host)
    {
        throw winrt::hresult_canceled();
    }
    auto const answer = co_await AnswerOf(*host, launch);
    co_await winrt::resume_agile(fault.End());
    winrt::check_hresult(answer.result);
}

IAsyncAction Launch(std::wstring_view call, std::wstring application, std::optional<std::wstring> group)
{
    AsyncFault const fault(call);
    return fault.GivesNull() ? nullptr
                             : fault.Handed(Run(fault, HostReference(), {std::move(application), std::move(group)}));
}

constexpr std::wstring_view forCurrentApp = L"FullTrustProcessLauncher.LaunchFullTrustProcessForCurrentAppAsync";
constexpr std::wstring_view forApp = L"FullTrustProcessLauncher.LaunchFullTrustProcessForAppAsync";

} // namespace

IAsyncAction FullTrustProcessLauncherFactory::LaunchFullTrustProcessForCurrentAppAsync() const
{
    return Launch(forCurrentApp, L"", std::nullopt);
}

IAsyncAction FullTrustProcessLauncherFactory::LaunchFullTrustProcessForCurrentAppAsync(
    winrt::hstring const& parameterGroupId) const
{
    return Launch(forCurrentApp, L"", std::wstring(parameterGroupId));
}

IAsyncAction FullTrustProcessLauncherFactory::LaunchFullTrustProcessForAppAsync(
    winrt::hstring const& fullTrustPackageRelativeAppId) const
{
    return Launch(forApp, std::wstring(fullTrustPackageRelativeAppId), std::nullopt);
}

IAsyncAction FullTrustProcessLauncherFactory::LaunchFullTrustProcessForAppAsync(
    winrt::hstring const& fullTrustPackageRelativeAppId, winrt::hstring const& parameterGroupId) const
{
    return Launch(forApp, std::wstring(fullTrustPackageRelativeAppId), std::wstring(parameterGroupId));
}

} // namespace sim
