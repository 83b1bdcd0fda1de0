#include "simulator/runtime/AsyncCall.h"
#include "simulator/runtime/Factory.h"
#include "simulator/runtime/Implements.h"

#include <winrt/Windows.ApplicationModel.h>

namespace sim
{

namespace
{

// Completes when the process has been started, on a thread of the multi-threaded apartment.
// cppcheck-suppress passedByValue ; a coroutine outlives what its caller holds
Foundation::IAsyncAction Run(AsyncFault fault, HostReference process, LaunchDesktop launch)
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

Foundation::IAsyncAction Launch(std::wstring_view call, winrt::hstring const& application,
                                std::optional<std::wstring> group = std::nullopt)
{
    AsyncFault const fault(call);
    return fault.GivesNull() ? nullptr
                             : fault.Handed(Run(fault, HostReference(), {std::wstring(application), std::move(group)}));
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
