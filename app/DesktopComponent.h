#pragma once
#include "app/App.h"

#include <winrt/Windows.ApplicationModel.Background.h>
#include <winrt/Windows.Foundation.h>

namespace VelmoNotificationClient
{

// Starts the suite's desktop component with one of the parameter groups that the package declares. Throws hresult_error
// when the launch fails at once.
winrt::Windows::Foundation::IAsyncAction LaunchDesktopComponent(wchar_t const* parameterGroup);

// Logs when the desktop component has been started, and completes the background task that the launch was for, if it
// was for one; on the thread that completes the launch, since the launching thread may be blocked. A launch that fails
// is not observed: no line, no retry, and its task is never completed. The App stays alive until then. When the task
// cannot be completed, the process ends.
winrt::fire_and_forget FinishLaunch(
    winrt::com_ptr<App> app, winrt::Windows::Foundation::IAsyncAction launch,
    winrt::Windows::ApplicationModel::Background::BackgroundTaskDeferral deferral = nullptr);

} // namespace VelmoNotificationClient
