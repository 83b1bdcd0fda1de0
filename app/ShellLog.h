#pragma once
#include "service/LogSite.h"

namespace VelmoNotificationClient
{

// The log site of start-up and activation.
inline constexpr LogSite shellLog(L"ZEBMain");

} // namespace VelmoNotificationClient
