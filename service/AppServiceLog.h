#pragma once
#include "service/LogSite.h"

namespace VelmoNotificationClient
{

// The log site of the code that serves the helper.
inline constexpr LogSite appServiceLog(L"AppService");

} // namespace VelmoNotificationClient
