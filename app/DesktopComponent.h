#pragma once
#include "app/App.h"

#include <winrt/Windows.ApplicationModel.Background.h>
#include <winrt/Windows.Foundation.h>

namespace VelmoNotificationClient
{

// Starts the suite's desktop component with one of the parameter groups that the package declares. Throws hresult_error
// when the launch fails at once.
//
// When the launch has completed, logs it and completes the background task that it is for, if any; never on the calling
// thread, which may be blocked. A launch that fails later is not observed: no line, no retry, and its task is never
// completed. The App stays alive until then. If the task cannot be completed, the process ends.
void LaunchDesktopComponent(
    winrt::com_ptr<App> const& app, wchar_t const* parameterGroup,
    winrt::Windows::ApplicationModel::Background::BackgroundTaskDeferral const& deferral = nullptr);

} // namespace VelmoNotificationClient
