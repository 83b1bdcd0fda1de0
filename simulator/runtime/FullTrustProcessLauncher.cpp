#include "simulator/runtime/FullTrustProcessLauncher.h"

#include "simulator/runtime/AsyncFault.h"
#include "simulator/runtime/Awaiters.h"
#include "simulator/runtime/HostReference.h"

using winrt::Windows::Foundation::IAsyncAction;

namespace sim
{

namespace
{

// cppcheck-suppress passedByValue ; a coroutine outlives what its caller holds
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

} // namespace

IAsyncAction FullTrustProcessLauncherFactory::Launch(std::wstring_view call, std::wstring_view application,
                                                     std::optional<std::wstring> group)
{
    AsyncFault const fault(call);
    return fault.GivesNull() ? nullptr
                             : fault.Handed(Run(fault, HostReference(), {std::wstring(application), std::move(group)}));
}

} // namespace sim
