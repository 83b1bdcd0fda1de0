#include "simulator/runtime/FullTrustProcessLauncher.h"

#include "simulator/runtime/PoolAwaiters.h"

using winrt::Windows::Foundation::IAsyncAction;

namespace sim
{

namespace
{

// The action itself: fault is what it was struck by, if it was.
IAsyncAction Run(std::optional<Fault> fault, DesktopLaunch launch)
{
    if (fault && fault->kind == FaultKind::Never)
    {
        co_await std::suspend_always();
    }
    if (fault && fault->kind == FaultKind::Completion)
    {
        co_await winrt::resume_background(); // later, and where completions arrive
        throw winrt::hresult_error(fault->Result());
    }
    auto const result = co_await launch;
    if (fault && fault->kind == FaultKind::Delay)
    {
        co_await Delay(fault->value);
    }
    winrt::check_hresult(result);
}

IAsyncAction Launch(std::wstring_view call, std::wstring application, std::optional<std::wstring> group)
{
    auto const fault = CurrentHost().TakeFault(call);
    if (fault && fault->kind == FaultKind::Now)
    {
        throw winrt::hresult_error(fault->Result());
    }
    if (fault && fault->kind == FaultKind::Null)
    {
        return nullptr;
    }
    return Run(fault, DesktopLaunch(std::move(application), std::move(group)));
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
