#pragma once
#include "simulator/runtime/Namespaces.h"

#include <cstdint>
#include <string_view>
#include <winrt/Windows.ApplicationModel.AppService.h>

namespace sim
{

// The service's end of a connection that a caller opens. Its task keeps it.
AppService::AppServiceConnection MakeServiceEnd(std::uint32_t connection, std::wstring_view service);

} // namespace sim
