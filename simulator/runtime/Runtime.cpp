#include "simulator/runtime/Runtime.h"

#include "simulator/runtime/Application.h"
#include "simulator/runtime/CoreApplication.h"
#include "simulator/runtime/FullTrustProcessLauncher.h"
#include "simulator/runtime/Window.h"

#include <algorithm>
#include <atomic>

namespace sim
{

namespace
{

std::atomic<Host*> currentHost = nullptr;

struct KnownClass
{
    std::wstring_view name;
    IInspectable (*makeFactory)();
};

template <typename Factory>
IInspectable Make()
{
    return *winrt::make_self<Factory>();
}

constexpr KnownClass classes[] = {
    {L"Windows.ApplicationModel.Core.CoreApplication", Make<CoreApplicationFactory>},
    {L"Windows.ApplicationModel.FullTrustProcessLauncher", Make<FullTrustProcessLauncherFactory>},
    {L"Windows.UI.Xaml.Application", Make<ApplicationFactory>},
    {L"Windows.UI.Xaml.Window", Make<WindowFactory>},
};

KnownClass const* Find(std::wstring_view name) noexcept
{
    auto const* const found =
        std::find_if(std::begin(classes), std::end(classes), [&](auto const& known) { return known.name == name; });
    return found == std::end(classes) ? nullptr : found;
}

} // namespace

Host& CurrentHost() noexcept
{
    return *currentHost;
}

void SetCurrentHost(Host* host) noexcept
{
    // Gives the process a multi-threaded apartment for good, which its pool threads belong to: completions arrive
    // there.
    static auto const usage = [] {
        CO_MTA_USAGE_COOKIE cookie = nullptr;
        CoIncrementMTAUsage(&cookie);
        return cookie;
    }();
    static_cast<void>(usage);
    currentHost = host;
}

bool StruckByNull(std::wstring_view call)
{
    auto const fault = CurrentHost().TakeFault(call);
    if (fault && fault->kind == FaultKind::Now)
    {
        throw winrt::hresult_error(fault->Result());
    }
    return fault && fault->kind == FaultKind::Null;
}

void ThrowIfStruck(std::wstring_view call)
{
    StruckByNull(call);
}

bool HasClass(std::wstring_view className) noexcept
{
    return Find(className) != nullptr;
}

std::int32_t GetFactory(std::wstring_view className, void** factory) noexcept
try
{
    *factory = nullptr;
    auto const* const known = Find(className);
    if (!known)
    {
        return REGDB_E_CLASSNOTREG;
    }
    ThrowIfStruck(className.substr(className.find_last_of(L'.') + 1));
    *factory = winrt::detach_abi(known->makeFactory());
    return S_OK;
}
catch (...)
{
    return winrt::to_hresult();
}

} // namespace sim
