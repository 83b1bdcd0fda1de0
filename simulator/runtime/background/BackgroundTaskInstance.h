#pragma once
#include "simulator/protocol/Activation.h"
#include "simulator/runtime/Namespaces.h"

#include <functional>
#include <winrt/Windows.ApplicationModel.Background.h>

namespace sim
{

// OnBackgroundActivated.
using ActivateInBackground = std::function<void(Background::IBackgroundTaskInstance const&)>;

// Activates the app for a task. The instance is kept until OnBackgroundActivated has returned and all deferrals are
// completed.
void RunTask(ServiceStart const& start, ActivateInBackground const& activate);
void RunTask(TaskStart const& start, ActivateInBackground const& activate);

} // namespace sim
