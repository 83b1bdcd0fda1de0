#include "simulator/model/KnownCalls.h"

#include <algorithm>

namespace sim
{

namespace
{

// The bare class name stands for its activation factory.
constexpr KnownCall calls[] = {
    {L"Application", false, false},
    {L"Application.CreateInstance", false, false},
    {L"Application.Start", false, false},
    {L"Application.Suspending", false, false},
    {L"CoreApplication", false, false},
    {L"CoreApplication.Exit", false, false},
    {L"FullTrustProcessLauncher", false, false},
    {L"FullTrustProcessLauncher.LaunchFullTrustProcessForAppAsync", true, true},
    {L"FullTrustProcessLauncher.LaunchFullTrustProcessForCurrentAppAsync", true, true},
    {L"LaunchActivatedEventArgs", false, true},
    {L"LaunchActivatedEventArgs.Kind", false, false},
    {L"ProtocolActivatedEventArgs", false, true},
    {L"ProtocolActivatedEventArgs.Kind", false, false},
    {L"Window", false, false},
    {L"Window.Content", false, false},
    {L"Window.Current", false, true},
};

} // namespace

std::span<KnownCall const> KnownCalls()
{
    return calls;
}

KnownCall const* FindKnownCall(std::wstring_view name)
{
    auto const* found = std::find_if(std::begin(calls), std::end(calls), [&](auto const& c) { return c.name == name; });
    return found == std::end(calls) ? nullptr : found;
}

} // namespace sim
