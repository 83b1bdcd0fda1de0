#pragma once
#include "simulator/runtime/Namespaces.h"

#include <string>
#include <string_view>
#include <winrt/Windows.ApplicationModel.Background.h>

namespace sim
{

// A task that the app has registered, or an app service of it that runs. id: a GUID without braces; empty for an app
// service.
Background::BackgroundTaskRegistration MakeRegistration(std::wstring const& id, std::wstring_view name);

} // namespace sim
