#pragma once

namespace sim
{

// The runtime classes that programs can ask the simulator for, as they are registered in a prefix.
inline constexpr wchar_t const* runtimeClassNames[] = {
    L"Windows.ApplicationModel.Core.CoreApplication",
    L"Windows.ApplicationModel.FullTrustProcessLauncher",
    L"Windows.UI.Xaml.Application",
    L"Windows.UI.Xaml.Window",
};

} // namespace sim
