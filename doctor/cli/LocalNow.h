#pragma once
#include "doctor/log/LogTime.h"

namespace doctor
{

// The machine's local time.
LogTime LocalNow();

} // namespace doctor
