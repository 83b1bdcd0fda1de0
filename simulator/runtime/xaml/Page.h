#pragma once
#include "simulator/runtime/Namespaces.h"

#include <string>
#include <winrt/Windows.UI.Xaml.h>

namespace sim
{

// Makes the app's page of that class in each of the two ways in which the framework can, and releases it: by
// activating the class that the package declares, and with the type that the application object tells of it. Nothing is
// shown and nothing is navigated to. The device's journal gets for each way page-made or page-failed with the result
// code. On the UI thread.
void MakePage(Xaml::Application const& application, std::wstring const& className);

} // namespace sim
